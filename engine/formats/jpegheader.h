#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace engine {

struct JpegHeader
{
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    int components = 0;
    int bits = 0; ///< of a component

    /// What Adobe's marker says of the colours: 0 they are as they are, 1 YCbCr, 2 YCCK; -1: there
    /// is no such marker.
    int adobeTransform = -1;
};

/// What a JPEG file says of its picture; nothing if it is none, or one that says nothing.
std::optional<JpegHeader> jpegHeaderOf(std::string_view bytes);

} // namespace engine
