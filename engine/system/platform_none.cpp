// Where the system offers nothing of its own: plain POSIX, and what can't be had is left out.
#include "platform.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

extern char **environ; // NOLINT(readability-redundant-declaration): not everywhere

namespace engine::platform {

void dieWithParent(pid_t) {}

bool forbidCoreDumps()
{
    const rlimit none = {0, 0};
    return setrlimit(RLIMIT_CORE, &none) == 0;
}

std::optional<std::chrono::duration<double>> processorTimeOf(pid_t)
{
    return {};
}

Descriptor openUnnamedFile(int)
{
    errno = EOPNOTSUPP;
    return {};
}

bool nameFile(int, int, const std::string &)
{
    errno = EOPNOTSUPP;
    return false;
}

bool exchangeFiles(int, const std::string &, const std::string &)
{
    errno = EOPNOTSUPP;
    return false;
}

void execute(int, const std::string &path, char *const argv[])
{
    execve(path.c_str(), argv, environ);
}

std::vector<std::string> loadersOf(int)
{
    return {};
}

int usableProcessors()
{
    return std::max(1, int(sysconf(_SC_NPROCESSORS_ONLN)));
}

void closeRange(int first, int last)
{
    const auto end = std::min(last, int(sysconf(_SC_OPEN_MAX)));
    for (int number = first; number <= end; ++number)
        close(number);
}

} // namespace engine::platform
