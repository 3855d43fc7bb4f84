#pragma once

#include <optional>
#include <string>

namespace engine {

/// The bytes that a zlib stream stands for, no more than so many; nothing if it is damaged or
/// stands for more.
std::optional<std::string> inflated(const std::string &packed, std::size_t most);

/// A zlib stream, as small as it gets.
std::string deflated(const std::string &bytes);

/// One that is a little larger and made in a quarter of the time: to compare, or to be packed
/// again.
std::string quicklyDeflated(const std::string &bytes);

} // namespace engine
