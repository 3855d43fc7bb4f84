#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace engine {

/// A bilevel image: rows from the top, each packed most significant bit first and padded with zeros
/// to whole bytes; 1 is black.
///
/// In a PDF file's terms a black pixel is a sample of 0, whatever the image's colour space and
/// Decode array then make of it: as the JBIG2Decode filter yields them, and CCITTFaxDecode where
/// BlackIs1 is not set.
class Bitmap
{
public:
    /// The bytes of the largest bitmap that there is; A0 at 1100 dpi takes less.
    static constexpr std::uint64_t largest = std::uint64_t(1) << 28;

    /// All white; nothing if it would be larger than the largest.
    static std::optional<Bitmap> blank(std::uint32_t width, std::uint32_t height);

    /// From a PDF image's samples, in rows as above; nothing if it would be larger than the largest
    /// or if samples are missing. What follows the last row is passed over.
    static std::optional<Bitmap> ofSamples(std::uint32_t width, std::uint32_t height,
                                           std::string_view samples);

    /// The samples again.
    [[nodiscard]] std::string samples() const;

    [[nodiscard]] std::uint32_t width() const { return m_width; }
    [[nodiscard]] std::uint32_t height() const { return m_height; }

    /// The bytes of a row.
    [[nodiscard]] std::size_t stride() const { return m_stride; }

    [[nodiscard]] const std::uint8_t *row(std::size_t y) const
    {
        return m_bytes.data() + y * m_stride;
    }

    /// Who writes here leaves the padding zero, or calls clearPadding().
    std::uint8_t *row(std::size_t y) { return m_bytes.data() + y * m_stride; }

    void invert();
    void clearPadding();

    bool operator==(const Bitmap &other) const;

private:
    Bitmap(std::uint32_t width, std::uint32_t height, std::size_t stride);

    std::uint32_t m_width;
    std::uint32_t m_height;
    std::size_t m_stride;
    std::vector<std::uint8_t> m_bytes;
};

} // namespace engine
