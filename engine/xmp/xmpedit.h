#pragma once

#include <map>
#include <optional>
#include <string>

namespace engine {

/// What becomes of a document's description: texts in UTF-8 by the keys of its information
/// dictionary ("/Title", "/Author", "/Subject", "/Keywords", "/Creator", "/Producer"). An empty
/// text takes the entry out; what isn't named stays.
using DescriptionChanges = std::map<std::string, std::string>;

/// The XMP packet with these properties, in place of those that it has of the same meaning; all
/// others stay. Nothing for what is no XMP packet.
std::optional<std::string> changedXmp(const std::string &packet, const DescriptionChanges &changes);

/// The XMP packet without the claim to be PDF/A. Nothing for what is no XMP packet.
std::optional<std::string> withoutPdfaClaim(const std::string &packet);

} // namespace engine
