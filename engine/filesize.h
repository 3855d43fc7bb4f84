#pragma once

#include <cstdint>

namespace engine {

/// The bytes of an open file; 0 for one that can't be asked.
std::uintmax_t sizeOf(int file);

} // namespace engine
