#pragma once

#include <qpdf/QPDF.hh>

namespace engine {

/// Downsamples the copy's bilevel images anew from the original's. Ghostscript takes one pixel of
/// many, whatever is asked of it, and spoils half-tones. Of images in run lengths or Group 4 only
/// where any compression will do: others are not written here.
void resampleBilevelImages(QPDF &copy, QPDF &original, bool anyCompression);

} // namespace engine
