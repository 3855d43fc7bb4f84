#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace engine {

/// A page as it was drawn: rows from the top, three bytes a pixel (red, green, blue).
struct Picture
{
    static constexpr int channels = 3;

    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> samples;

    [[nodiscard]] const std::uint8_t *pixel(int x, int y) const
    {
        return samples.data() + (std::size_t(y) * std::size_t(width) + std::size_t(x)) * channels;
    }
};

/// The pictures in a file, one after the other as PPM with eight bits a sample. What is there is
/// not trusted.
class PictureFile
{
public:
    /// The file stays the caller's and is read from its beginning, whatever its position.
    explicit PictureFile(int file)
        : m_file(file)
    {
    }

    /// Nothing at the end of the file. Throws a std::runtime_error where no whole picture follows.
    std::optional<Picture> next();

private:
    int m_file;
    std::int64_t m_offset = 0;
};

} // namespace engine
