#include "bitmap.h"

#include <algorithm>

namespace engine {

Bitmap::Bitmap(std::uint32_t width, std::uint32_t height, std::size_t stride)
    : m_width(width)
    , m_height(height)
    , m_stride(stride)
    , m_bytes(stride * height)
{
}

std::optional<Bitmap> Bitmap::blank(std::uint32_t width, std::uint32_t height)
{
    const std::uint64_t rowBytes = (std::uint64_t(width) + 7) / 8;
    if (rowBytes > largest || rowBytes * height > largest)
        return {};
    return Bitmap(width, height, std::size_t(rowBytes));
}

std::optional<Bitmap> Bitmap::ofSamples(std::uint32_t width, std::uint32_t height,
                                        std::string_view samples)
{
    // Not made before it is known that the samples are there: a few bytes can claim any size.
    const std::uint64_t rowBytes = (std::uint64_t(width) + 7) / 8;
    if (rowBytes > largest || rowBytes * height > std::min<std::uint64_t>(largest, samples.size()))
        return {};
    std::optional<Bitmap> bitmap = blank(width, height);
    std::copy_n(samples.begin(), bitmap->m_bytes.size(), bitmap->m_bytes.begin());
    bitmap->invert();
    return bitmap;
}

std::string Bitmap::samples() const
{
    std::string samples(m_bytes.size(), '\0');
    std::transform(m_bytes.begin(), m_bytes.end(), samples.begin(),
                   [](std::uint8_t byte) { return char(~byte); });
    return samples;
}

void Bitmap::invert()
{
    for (std::uint8_t &byte : m_bytes)
        byte = std::uint8_t(~byte);
    clearPadding();
}

void Bitmap::clearPadding()
{
    const unsigned spare = (8 - m_width % 8) % 8;
    if (spare == 0)
        return;
    for (std::size_t end = m_stride; end <= m_bytes.size(); end += m_stride)
        m_bytes[end - 1] = std::uint8_t(m_bytes[end - 1] & (0xFFU << spare));
}

bool Bitmap::operator==(const Bitmap &other) const
{
    return m_width == other.m_width && m_height == other.m_height && m_bytes == other.m_bytes;
}

} // namespace engine
