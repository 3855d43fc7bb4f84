#pragma once

#include <qpdf/QPDF.hh>

namespace engine {

/// Gives the copy what the original asks of viewers, which Ghostscript passes over: the language of
/// the text, the layout of the pages, the side they are bound on.
void restoreViewing(QPDF &copy, QPDF &original);

} // namespace engine
