#pragma once

#include <string_view>

namespace engine {

/// Writes all of it where the file stands; throws a std::system_error if not every byte gets there.
void writeAll(int file, std::string_view bytes);

/// Throws a std::system_error with errno for the reason: "what: reason".
[[noreturn]] void failWriting(const char *what);

} // namespace engine
