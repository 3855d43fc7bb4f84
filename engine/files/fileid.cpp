#include "fileid.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace engine {

std::optional<FileId> idOf(int file)
{
    struct stat entry = {};
    if (fstat(file, &entry) != 0)
        return {};
    return FileId{entry.st_dev, entry.st_ino};
}

std::optional<FileId> idOf(int folder, const std::string &name)
{
    struct stat entry = {};
    if (fstatat(folder, name.c_str(), &entry, AT_SYMLINK_NOFOLLOW) != 0)
        return {};
    return FileId{entry.st_dev, entry.st_ino};
}

} // namespace engine
