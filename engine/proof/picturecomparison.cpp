#include "picturecomparison.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace engine {

namespace {

constexpr int blockSize = 4;
constexpr int areaSize = 16;

bool overlap(const PixelRectangle &one, const PixelRectangle &other)
{
    return one.left < other.right && other.left < one.right && one.top < other.bottom &&
           other.top < one.bottom;
}

// The part of the rectangle that lies on the picture.
PixelRectangle clipped(const PixelRectangle &rectangle, const Picture &picture)
{
    return {
        .left = std::clamp(rectangle.left, 0, picture.width),
        .top = std::clamp(rectangle.top, 0, picture.height),
        .right = std::clamp(rectangle.right, 0, picture.width),
        .bottom = std::clamp(rectangle.bottom, 0, picture.height),
    };
}

bool isBeyond(int value, int channel, int tolerance, const Picture &other, const PixelRectangle &at)
{
    int least = 255;
    int most = 0;
    for (int y = at.top; y < at.bottom; ++y) {
        for (int x = at.left; x < at.right; ++x) {
            const int near = other.pixel(x, y)[channel];
            least = std::min(least, near);
            most = std::max(most, near);
        }
    }
    const int spread = tolerance + (most - least) / 2;
    return value < least - spread || value > most + spread;
}

class Comparison
{
public:
    Comparison(const Picture &copy, const Picture &original, const std::vector<PlacedImage> &images,
               const Tolerance &tolerance)
        : m_copy(copy)
        , m_original(original)
        , m_images(images)
        , m_tolerance(tolerance)
        , m_inside(std::size_t(copy.width) * std::size_t(copy.height))
    {
        for (const PlacedImage &image : images)
            mark(clipped(image.where, copy));
    }

    PictureDifference run()
    {
        comparePixels();
        compareMeans(blockSize, m_tolerance.block);
        compareMeans(areaSize, m_tolerance.area);
        return m_difference;
    }

private:
    void mark(const PixelRectangle &place)
    {
        for (int y = place.top; y < place.bottom; ++y) {
            for (int x = place.left; x < place.right; ++x)
                m_inside[indexOf(x, y)] = true;
        }
    }

    [[nodiscard]] std::size_t indexOf(int x, int y) const
    {
        return std::size_t(y) * std::size_t(m_copy.width) + std::size_t(x);
    }

    void blame(const PixelRectangle &place)
    {
        for (const PlacedImage &image : m_images) {
            if (overlap(clipped(image.where, m_copy), place))
                m_difference.images.insert(image.object);
        }
    }

    void comparePixels()
    {
        for (int y = 0; y < m_copy.height; ++y) {
            for (int x = 0; x < m_copy.width; ++x)
                comparePixel(x, y);
        }
    }

    void comparePixel(int x, int y)
    {
        for (int channel = 0; channel < Picture::channels; ++channel) {
            const int one = m_copy.pixel(x, y)[channel];
            const int other = m_original.pixel(x, y)[channel];
            if (one == other)
                continue;
            if (!m_inside[indexOf(x, y)])
                m_difference.elsewhere = true;
            else if (std::abs(one - other) > m_tolerance.pixel && isApart(x, y, channel))
                blame({.left = x, .top = y, .right = x + 1, .bottom = y + 1});
        }
    }

    [[nodiscard]] bool isApart(int x, int y, int channel) const
    {
        const PixelRectangle around =
            clipped({.left = x - 1, .top = y - 1, .right = x + 2, .bottom = y + 2}, m_copy);
        const int one = m_copy.pixel(x, y)[channel];
        const int other = m_original.pixel(x, y)[channel];
        return isBeyond(one, channel, m_tolerance.pixel, m_original, around) ||
               isBeyond(other, channel, m_tolerance.pixel, m_copy, around);
    }

    void compareMeans(int size, int tolerance)
    {
        for (int y = 0; y < m_copy.height; y += size) {
            for (int x = 0; x < m_copy.width; x += size) {
                const PixelRectangle block =
                    clipped({.left = x, .top = y, .right = x + size, .bottom = y + size}, m_copy);
                if (isMeanApart(block, tolerance))
                    blame(block);
            }
        }
    }

    // Of the pixels in it that belong to an image.
    [[nodiscard]] bool isMeanApart(const PixelRectangle &block, int tolerance) const
    {
        std::array<int, Picture::channels> sums = {};
        int count = 0;
        for (int y = block.top; y < block.bottom; ++y) {
            for (int x = block.left; x < block.right; ++x) {
                if (!m_inside[indexOf(x, y)])
                    continue;
                ++count;
                for (std::size_t channel = 0; channel < sums.size(); ++channel)
                    sums[channel] += m_copy.pixel(x, y)[channel] - m_original.pixel(x, y)[channel];
            }
        }
        return std::any_of(sums.begin(), sums.end(),
                           [&](int sum) { return std::abs(sum) > tolerance * count; });
    }

    const Picture &m_copy;
    const Picture &m_original;
    const std::vector<PlacedImage> &m_images;
    Tolerance m_tolerance;
    std::vector<bool> m_inside;
    PictureDifference m_difference;
};

} // namespace

PictureDifference differenceOf(const Picture &copy, const Picture &original,
                               const std::vector<PlacedImage> &images, const Tolerance &tolerance)
{
    if (copy.width != original.width || copy.height != original.height)
        return {.images = {}, .elsewhere = true};
    if (copy.samples == original.samples)
        return {};
    return Comparison(copy, original, images, tolerance).run();
}

} // namespace engine
