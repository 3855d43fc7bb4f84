#include "filesize.h"

#include <sys/stat.h>

namespace engine {

std::uintmax_t sizeOf(int file)
{
    struct stat entry = {};
    return fstat(file, &entry) == 0 ? std::uintmax_t(entry.st_size) : 0;
}

} // namespace engine
