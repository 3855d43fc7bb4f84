#pragma once

#include "formats/bitmap.h"

#include <optional>
#include <string>

namespace engine {

/// The bitmap of an embedded JBIG2 stream and what it shares with others (empty: nothing); nothing
/// if it is damaged or not of the stated size.
std::optional<Bitmap> decodeJbig2(const std::string &stream, const std::string &shared,
                                  std::uint32_t width, std::uint32_t height);

} // namespace engine
