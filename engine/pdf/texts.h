#pragma once

#include <qpdf/QPDF.hh>

namespace engine {

/// Whether a page of the original that shows text has become one that shows none: Ghostscript
/// paints a page with transparency as one picture where the format allows no transparency.
bool losesText(QPDF &original, QPDF &copy);

} // namespace engine
