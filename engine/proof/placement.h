#pragma once

#include "pdf/pageview.h"
#include "pdf/touched.h"
#include "picturecomparison.h"

namespace engine {

/// Where a part shows on its page's picture, which has so many pixels, with a margin for what
/// sampling spreads. The part need not lie within the page; numbers that make no sense are the
/// whole picture.
PixelRectangle placeOf(const TouchedPart &part, const PageView &page, int width, int height);

} // namespace engine
