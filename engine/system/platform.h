#pragma once

#include "descriptor.h"

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

/// What each system does in its own way.
namespace engine::platform {

/// In a child: it is killed when its parent, which must be the given process, ends in whatever way.
void dieWithParent(pid_t parent);

/// This process, and what it becomes, leaves no picture of its memory, and the passwords in it, on
/// the disk. False if the system won't have it.
bool forbidCoreDumps();

/// Processor time of a process so far; nothing where it can't be found out.
std::optional<std::chrono::duration<double>> processorTimeOf(pid_t process);

/// An empty file in the folder that has no name and vanishes when it is closed; none (and errno)
/// where the system or the file system doesn't know such files.
Descriptor openUnnamedFile(int folder);

/// Gives an unnamed file a name that must be free; false (and errno) if it can't.
bool nameFile(int file, int folder, const std::string &name);

/// Lets two files of a folder change names, in one step; false (and errno) if it can't: EINVAL,
/// ENOSYS or EOPNOTSUPP where the system or the file system doesn't know how.
bool exchangeFiles(int folder, const std::string &one, const std::string &other);

/// Becomes the program, whose path serves where there is no descriptor (-1) or where it doesn't.
/// Returns only on failure.
void execute(int program, const std::string &path, char *const argv[]);

/// The files that the system opens for execution when it starts the program.
std::vector<std::string> loadersOf(int program);

/// The processors that this process may use; at least 1.
int usableProcessors();

/// Closes the descriptors from first to last.
void closeRange(int first, int last);

} // namespace engine::platform
