#include "placement.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace engine {

namespace {

// What sampling spreads, and a page whose last pixel is not full.
constexpr int margin = 2;

struct Place
{
    double across; // from the left, as a share of the picture's width
    double down;   // from the top, as a share of its height
};

Place turned(double right, double up, int rotation)
{
    switch (rotation) {
    case 90:
        return {up, right};
    case 180:
        return {1 - right, up};
    case 270:
        return {1 - up, 1 - right};
    default:
        return {right, 1 - up};
    }
}

Place placeIn(const PageView &page, double x, double y)
{
    const Box &crop = page.crop;
    return turned((x - crop.left) / (crop.right - crop.left),
                  (y - crop.bottom) / (crop.top - crop.bottom), page.rotation);
}

std::pair<int, int> pixels(double one, double other, int count)
{
    const double first = std::floor(std::min(one, other) * count) - margin;
    const double last = std::ceil(std::max(one, other) * count) + margin;
    return {int(std::clamp<double>(first, 0, count)), int(std::clamp<double>(last, 0, count))};
}

} // namespace

PixelRectangle placeOf(const TouchedPart &part, const PageView &page, int width, int height)
{
    const Place one = placeIn(page, part.left, part.bottom);
    const Place other = placeIn(page, part.right, part.top);
    if (!std::isfinite(one.across + one.down + other.across + other.down))
        return {0, 0, width, height};
    const auto [left, right] = pixels(one.across, other.across, width);
    const auto [top, bottom] = pixels(one.down, other.down, height);
    return {left, top, right, bottom};
}

} // namespace engine
