#include "picture.h"

#include <cerrno>
#include <charconv>
#include <stdexcept>
#include <string_view>
#include <unistd.h>

namespace engine {

namespace {

// Far more than a page is ever drawn with.
constexpr int mostPixels = 1 << 26;
constexpr std::size_t longestHeader = 32;

[[noreturn]] void refuse()
{
    throw std::runtime_error("no picture of a page");
}

std::size_t readAt(int file, std::int64_t offset, void *bytes, std::size_t count)
{
    std::size_t done = 0;
    while (done < count) {
        const ssize_t piece = pread(file, static_cast<char *>(bytes) + done, count - done,
                                    off_t(offset) + off_t(done));
        if (piece < 0 && errno == EINTR)
            continue;
        if (piece <= 0)
            break;
        done += std::size_t(piece);
    }
    return done;
}

// What stands before the separator, which goes as well.
int numberBefore(char separator, std::string_view &header)
{
    int number = 0;
    const char *end = header.data() + header.size();
    const auto [rest, error] = std::from_chars(header.data(), end, number);
    if (error != std::errc() || rest == end || *rest != separator || number < 1)
        refuse();
    header.remove_prefix(std::size_t(rest - header.data()) + 1);
    return number;
}

void skip(std::string_view expected, std::string_view &header)
{
    if (!header.starts_with(expected))
        refuse();
    header.remove_prefix(expected.size());
}

} // namespace

std::optional<Picture> PictureFile::next()
{
    char beginning[longestHeader];
    const std::size_t there = readAt(m_file, m_offset, beginning, sizeof beginning);
    if (there == 0)
        return {};
    std::string_view header(beginning, there);
    Picture picture;
    skip("P6\n", header);
    picture.width = numberBefore(' ', header);
    picture.height = numberBefore('\n', header);
    skip("255\n", header);
    if (picture.height > mostPixels / picture.width)
        refuse();
    picture.samples.resize(std::size_t(picture.width) * std::size_t(picture.height) *
                           Picture::channels);
    m_offset += std::int64_t(there - header.size());
    const std::size_t count =
        readAt(m_file, m_offset, picture.samples.data(), picture.samples.size());
    if (count != picture.samples.size())
        refuse();
    m_offset += std::int64_t(count);
    return picture;
}

} // namespace engine
