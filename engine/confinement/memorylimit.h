#pragma once

#include <cstdint>

namespace engine {

/// From now on the process, and what it becomes, gets no more than so many bytes of address space.
void limitMemory(std::uintmax_t bytes);

/// The same for a process that stays what it is. Without effect in a build with the address
/// sanitizer, which reserves terabytes.
void limitOwnMemory(std::uintmax_t bytes);

} // namespace engine
