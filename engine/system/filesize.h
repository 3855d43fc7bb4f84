#pragma once

#include <cstdint>
#include <sys/stat.h>

namespace engine {

/// The bytes of an open file; 0 for one that can't be asked.
inline std::uintmax_t sizeOf(int file)
{
    struct stat entry = {};
    return fstat(file, &entry) == 0 ? std::uintmax_t(entry.st_size) : 0;
}

} // namespace engine
