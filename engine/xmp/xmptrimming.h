#pragma once

#include <optional>
#include <string>

namespace engine {

enum class History { Kept, Dropped };

/// An XMP packet without its padding, thumbnails, palettes and, on demand, the history of the
/// editing that led to the document. Every other byte stays as it is. Nothing if there is nothing
/// to cut, or if the packet is not well-formed XML in UTF-8.
std::optional<std::string> trimmedPacket(const std::string &packet, History history);

} // namespace engine
