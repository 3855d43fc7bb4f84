#pragma once

#include <optional>
#include <string>

namespace engine {

/// The same JPEG in fewer bytes: every coefficient, the sampling and what tells readers its colours
/// (component numbers, JFIF and Adobe markers) as they were; progressive, or sequential where that
/// is smaller, with Huffman tables of its own. Comments, profiles, previews and restart markers go.
/// Nothing if it does not become smaller, or is not one whole undamaged JPEG of 8 bits in Huffman
/// coding.
std::optional<std::string> recodedJpeg(const std::string &jpeg);

} // namespace engine
