#include "jpegheader.h"

namespace engine {

namespace {

constexpr unsigned startOfImage = 0xffd8;
constexpr unsigned startOfScan = 0xffda;
constexpr unsigned adobe = 0xffee;

unsigned byteAt(std::string_view bytes, std::size_t position)
{
    return position < bytes.size() ? static_cast<unsigned char>(bytes[position]) : 0;
}

unsigned wordAt(std::string_view bytes, std::size_t position)
{
    return byteAt(bytes, position) << 8 | byteAt(bytes, position + 1);
}

// SOF0 to SOF15 without the three that stand for something else.
bool isFrame(unsigned marker)
{
    return (marker & 0xfff0) == 0xffc0 && marker != 0xffc4 && marker != 0xffc8 && marker != 0xffcc;
}

} // namespace

std::optional<JpegHeader> jpegHeaderOf(std::string_view bytes)
{
    if (wordAt(bytes, 0) != startOfImage)
        return {};
    JpegHeader header;
    for (std::size_t position = 2; position + 4 <= bytes.size();) {
        const unsigned marker = wordAt(bytes, position);
        if (marker == 0xffff) {
            ++position;
            continue;
        }
        const std::string_view segment = bytes.substr(position + 4);
        if (marker == adobe && segment.substr(0, 5) == "Adobe")
            header.adobeTransform = int(byteAt(segment, 11));
        if (isFrame(marker)) {
            header.bits = int(byteAt(segment, 0));
            header.height = wordAt(segment, 1);
            header.width = wordAt(segment, 3);
            header.components = int(byteAt(segment, 5));
        }
        if (marker < 0xff00 || marker == startOfScan)
            break;
        position += 2 + wordAt(bytes, position + 2);
    }
    return header.components > 0 ? std::optional(header) : std::nullopt;
}

} // namespace engine
