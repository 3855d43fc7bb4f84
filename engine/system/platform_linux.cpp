#include "platform.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace engine::platform {

void dieWithParent(pid_t parent)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent may have ended before this call.
    if (getppid() != parent)
        _exit(EXIT_FAILURE);
}

// The kernel pipes a core into a program whatever this limit is, but for the value 1; and no core
// is so small that it would fit into one byte of a file.
bool forbidCoreDumps()
{
    const rlimit one = {1, 1};
    return setrlimit(RLIMIT_CORE, &one) == 0;
}

std::optional<std::chrono::duration<double>> processorTimeOf(pid_t process)
{
    clockid_t clock = 0;
    timespec time = {};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return {};
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

Descriptor openUnnamedFile(int folder)
{
    return Descriptor(openat(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, 0666));
}

bool nameFile(int file, int folder, const std::string &name)
{
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    return linkat(AT_FDCWD, link.c_str(), folder, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

bool exchangeFiles(int folder, const std::string &one, const std::string &other)
{
    return renameat2(folder, one.c_str(), folder, other.c_str(), RENAME_EXCHANGE) == 0;
}

void execute(int program, const std::string &path, char *const argv[])
{
    if (program < 0) {
        execve(path.c_str(), argv, environ);
        return;
    }
    // By descriptor, because that is the one way of starting a program that the system call filter
    // leaves open.
    syscall(SYS_execveat, program, "", argv, environ, AT_EMPTY_PATH);
}

std::vector<std::string> loadersOf(int program)
{
    ElfW(Ehdr) header = {};
    if (pread(program, &header, sizeof header, 0) != ssize_t(sizeof header))
        return {};
    for (int index = 0; index < header.e_phnum; ++index) {
        ElfW(Phdr) part = {};
        const auto place = off_t(header.e_phoff) + index * off_t(sizeof part);
        if (pread(program, &part, sizeof part, place) != ssize_t(sizeof part))
            break;
        char name[256] = {};
        if (part.p_type == PT_INTERP && part.p_filesz < sizeof name &&
            pread(program, name, part.p_filesz, off_t(part.p_offset)) > 0)
            return {name};
    }
    return {};
}

int usableProcessors()
{
    cpu_set_t processors;
    CPU_ZERO(&processors);
    return sched_getaffinity(0, sizeof processors, &processors) == 0
               ? std::max(1, CPU_COUNT(&processors))
               : 1;
}

void closeRange(int first, int last)
{
    syscall(SYS_close_range, unsigned(first), unsigned(last), 0U);
}

} // namespace engine::platform
