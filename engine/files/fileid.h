#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

namespace engine {

/// Tells a file from all others, whatever it is called.
struct FileId
{
    dev_t device;
    ino_t inode;

    bool operator==(const FileId &) const = default;
};

/// Of an open file; nothing if it can't be asked.
std::optional<FileId> idOf(int file);

/// Of what has that name in the folder, a symbolic link itself; nothing if there is none.
std::optional<FileId> idOf(int folder, const std::string &name);

} // namespace engine
