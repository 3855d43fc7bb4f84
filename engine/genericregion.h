#pragma once

#include "bitmap.h"

namespace engine {

/// How a generic region is coded: ITU-T T.88, 6.2.
struct RegionCoding
{
    int pattern;  ///< template 0 or 1: which neighbours a pixel is predicted from
    bool typical; ///< rows like the one above are only marked as such (TPGDON)
};

/// The arithmetic code of a bitmap, which has pixels, as a generic region whose adaptive pixels are
/// at their nominal places, which adaptivePixels() lists.
std::string encodeRegion(const Bitmap &bitmap, const RegionCoding &coding);

/// As they are written into the region's head: a column and a row each, relative to the pixel.
std::string adaptivePixels(const RegionCoding &coding);

} // namespace engine
