#pragma once

#include "genericregion.h"

namespace engine {

/// The bitmap as JBIG2 (ITU-T T.88), lossless, in the form that a PDF stream with the filter
/// JBIG2Decode has: a page of one generic region, without globals. Its samples are those that
/// Bitmap speaks of. Empty if the bitmap has no pixels: JBIG2 can't say that.
std::string encodeJbig2(const Bitmap &bitmap);

/// The same with this coding, not with the best one.
std::string encodeJbig2(const Bitmap &bitmap, const RegionCoding &coding);

} // namespace engine
