#pragma once

#include <qpdf/QPDF.hh>

namespace engine {

/// Gives every bilevel image that Ghostscript wrote without loss a stream in JBIG2, which
/// Ghostscript doesn't write, where that is shorter.
void recodeBilevelImages(QPDF &document);

} // namespace engine
