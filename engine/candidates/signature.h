#pragma once

#include <qpdf/QPDF.hh>

namespace engine {

/// Whether the document carries a digital signature (a dictionary with a /ByteRange), which any
/// change breaks.
bool isSigned(QPDF &document);

} // namespace engine
