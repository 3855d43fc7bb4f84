#pragma once

#include <optional>
#include <string>

namespace engine {

/// The standard that an XMP packet claims, the strictest if there are several: "PDF/A-1",
/// "PDF/X-4", "PDF/E-1", "PDF/VT-1", "PDF/UA-1"; nothing if it claims none.
std::optional<std::string> claimInPacket(const std::string &packet);

} // namespace engine
