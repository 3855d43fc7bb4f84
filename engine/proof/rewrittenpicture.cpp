#include "rewrittenpicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace engine {

namespace {

// How far, in levels of 256, a block of a page may be from the original's.
struct BlockTolerance
{
    int edge;       ///< of the block, in pixels
    int brightness; ///< of its mean
    int colour;     ///< of the mean of its red, green or blue, which a conversion moves further
};

constexpr BlockTolerance small = {.edge = 4, .brightness = 40, .colour = 96};
constexpr BlockTolerance smallWithOtherFonts = {.edge = 4, .brightness = 80, .colour = 96};
constexpr BlockTolerance middle = {.edge = 8, .brightness = 30, .colour = 80};
constexpr BlockTolerance large = {.edge = 16, .brightness = 24, .colour = 64};

using Colour = std::array<double, Picture::channels>;

struct Block
{
    int left;
    int top;
    int right;
    int bottom;
};

Colour meanOf(const Picture &picture, const Block &block)
{
    std::array<int, Picture::channels> sums = {};
    for (int y = block.top; y < block.bottom; ++y) {
        const std::uint8_t *sample = picture.pixel(block.left, y);
        for (int x = block.left; x < block.right; ++x) {
            for (int &sum : sums)
                sum += *sample++;
        }
    }
    const double count = double(block.right - block.left) * (block.bottom - block.top);
    return {sums[0] / count, sums[1] / count, sums[2] / count};
}

bool isNear(const Colour &one, const Colour &other, const BlockTolerance &tolerance)
{
    const Colour apart = {one[0] - other[0], one[1] - other[1], one[2] - other[2]};
    const double brightness = 0.3 * apart[0] + 0.59 * apart[1] + 0.11 * apart[2];
    return std::abs(brightness) <= tolerance.brightness &&
           std::all_of(apart.begin(), apart.end(),
                       [&](double level) { return std::abs(level) <= tolerance.colour; });
}

class Comparison
{
public:
    Comparison(const Picture &copy, const Picture &original)
        : m_copy(copy)
        , m_original(original)
        , m_width(std::min(copy.width, original.width))
        , m_height(std::min(copy.height, original.height))
    {
    }

    [[nodiscard]] bool holds(const BlockTolerance &tolerance) const
    {
        for (int y = 0; y < m_height; y += tolerance.edge) {
            for (int x = 0; x < m_width; x += tolerance.edge) {
                const Block block = {x, y, std::min(x + tolerance.edge, m_width),
                                     std::min(y + tolerance.edge, m_height)};
                if (!isThere(block, tolerance))
                    return false;
            }
        }
        return true;
    }

private:
    // In each of both as it is in the other: a line between two blocks could else be moved out of
    // both.
    [[nodiscard]] bool isThere(const Block &block, const BlockTolerance &tolerance) const
    {
        const Colour one = meanOf(m_copy, block);
        const Colour other = meanOf(m_original, block);
        return isNear(one, other, tolerance) || (isAround(block, one, m_original, tolerance) &&
                                                 isAround(block, other, m_copy, tolerance));
    }

    [[nodiscard]] bool isAround(const Block &block, const Colour &mean, const Picture &picture,
                                const BlockTolerance &tolerance) const
    {
        for (int down = -1; down <= 1; ++down) {
            for (int across = -1; across <= 1; ++across) {
                const Block moved = {block.left + across, block.top + down, block.right + across,
                                     block.bottom + down};
                const bool isInside = moved.left >= 0 && moved.top >= 0 && moved.right <= m_width &&
                                      moved.bottom <= m_height;
                if (isInside && isNear(mean, meanOf(picture, moved), tolerance))
                    return true;
            }
        }
        return false;
    }

    const Picture &m_copy;
    const Picture &m_original;
    int m_width;
    int m_height;
};

} // namespace

bool showsTheSame(const Picture &copy, const Picture &original, bool hasOwnFonts)
{
    if (std::abs(copy.width - original.width) > 1 || std::abs(copy.height - original.height) > 1)
        return false;
    const Comparison comparison(copy, original);
    return comparison.holds(hasOwnFonts ? small : smallWithOtherFonts) &&
           comparison.holds(middle) && comparison.holds(large);
}

} // namespace engine
