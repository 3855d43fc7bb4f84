#pragma once

#include <string>

namespace engine {

/// All bytes of an open file, from its beginning, whatever its position. Throws a std::system_error
/// if it can't be read.
std::string contentOf(int file);

/// Writes these bytes to an open file, in place of what it holds. Throws a std::system_error if
/// they can't be written.
void setContent(int file, const std::string &bytes);

} // namespace engine
