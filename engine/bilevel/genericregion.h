#pragma once

#include "bitmap.h"

namespace engine {

/// How a generic region is coded: ITU-T T.88, 6.2.
struct RegionCoding
{
    int pattern;  ///< template 0 or 1: which neighbours a pixel is predicted from
    bool typical; ///< rows like the one above are only marked as such (TPGDON)

    /// So many pixels to the left is the first adaptive pixel, from 5 to 127; or 0: at its nominal
    /// place. Only with template 0.
    unsigned period = 0;
};

/// The arithmetic code of a bitmap, which has pixels, as a generic region whose adaptive pixels are
/// where adaptivePixels() says.
std::string encodeRegion(const Bitmap &bitmap, const RegionCoding &coding);

/// As they are written into the region's head: a column and a row each, relative to the pixel.
std::string adaptivePixels(const RegionCoding &coding);

} // namespace engine
