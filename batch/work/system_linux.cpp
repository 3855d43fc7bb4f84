#include "system.h"

#include <csignal>
#include <sched.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace batch {

namespace {

// A set that holds any number of processors; sizes grow until the kernel's own fits.
Processors allowed(std::size_t room)
{
    cpu_set_t *set = CPU_ALLOC(room);
    const std::size_t bytes = CPU_ALLOC_SIZE(room);
    Processors processors;
    if (sched_getaffinity(0, bytes, set) == 0) {
        for (std::size_t number = 0; number < room; ++number) {
            if (CPU_ISSET_S(number, bytes, set))
                processors.push_back(static_cast<int>(number));
        }
    }
    CPU_FREE(set);
    return processors;
}

} // namespace

Processors usableProcessors()
{
    constexpr std::size_t mostProcessors = 1 << 16;
    for (std::size_t room = CPU_SETSIZE; room <= mostProcessors; room *= 2) {
        if (Processors processors = allowed(room); !processors.empty())
            return processors;
    }
    return {0};
}

namespace system {

// Only calls that are safe between fork and exec; the set's room comes from the stack.
void prepareEngine(pid_t parent, const Processors &processors)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(1); // it died before the line above
    setpgid(0, 0);
    cpu_set_t set;
    CPU_ZERO(&set);
    for (const int number : processors) {
        if (number >= CPU_SETSIZE)
            return; // a machine too large for the set: the engine runs on all of them
        CPU_SET(static_cast<std::size_t>(number), &set);
    }
    if (!processors.empty())
        sched_setaffinity(0, sizeof set, &set);
}

} // namespace system
} // namespace batch
