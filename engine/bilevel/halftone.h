#pragma once

#include "bitmap.h"

namespace engine {

/// The longest period that there is, in pixels.
constexpr unsigned longestPeriod = 63;

/// After how many pixels of a row a halftone's screen repeats itself; 0 if nothing looks like a
/// halftone.
unsigned halftonePeriod(const Bitmap &bitmap);

} // namespace engine
