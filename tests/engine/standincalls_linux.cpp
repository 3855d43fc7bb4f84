#include "standincalls.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <linux/bpf.h>
#include <linux/io_uring.h>
#include <linux/kcmp.h>
#include <linux/keyctl.h>
#include <linux/perf_event.h>
#include <linux/userfaultfd.h>
#include <sched.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

bool canQueueSignal(pid_t other)
{
    siginfo_t signal = {};
    signal.si_code = SI_QUEUE;
    return syscall(SYS_rt_sigqueueinfo, other, 0, &signal) == 0;
}

bool canReadOtherLimits(pid_t other)
{
    rlimit limit = {};
    return prlimit(other, RLIMIT_CORE, nullptr, &limit) == 0;
}

// What is set for the other process is what it has already.
bool canSetPriority(pid_t other)
{
    const int priority = getpriority(PRIO_PROCESS, id_t(other));
    return setpriority(PRIO_PROCESS, id_t(other), priority) == 0;
}

bool canSetDiskPriority(pid_t other)
{
    constexpr int process = 1;
    const long priority = syscall(SYS_ioprio_get, process, other);
    return syscall(SYS_ioprio_set, process, other, priority) == 0;
}

bool canSetProcessors(pid_t other)
{
    cpu_set_t processors;
    return sched_getaffinity(other, sizeof processors, &processors) == 0 &&
           sched_setaffinity(other, sizeof processors, &processors) == 0;
}

bool canSetScheduler(pid_t other)
{
    sched_param parameters = {};
    return sched_getparam(other, &parameters) == 0 &&
           sched_setscheduler(other, sched_getscheduler(other), &parameters) == 0;
}

// To what it is already.
bool canSetOwnLimit(pid_t)
{
    rlimit limit = {};
    return getrlimit(RLIMIT_NOFILE, &limit) == 0 &&
           syscall(SYS_setrlimit, RLIMIT_NOFILE, &limit) == 0;
}

bool canSetLimitByNumber(pid_t)
{
    rlimit limit = {};
    return getrlimit(RLIMIT_NOFILE, &limit) == 0 && prlimit(0, RLIMIT_NOFILE, &limit, nullptr) == 0;
}

// The loader, by the one number that may be started, runs whatever file it is given.
bool canBecomeOtherProgram(pid_t)
{
    constexpr int programNumber = 200;
    const char *arguments[] = {"ld.so", "/bin/sh", "-c", "exit 10", nullptr};
    for (const char *path : {"/lib64/ld-linux-x86-64.so.2", "/lib/ld-linux-aarch64.so.1"}) {
        const int loader = open(path, O_RDONLY);
        if (loader >= 0 && dup2(loader, programNumber) == programNumber)
            syscall(SYS_execveat, programNumber, "", arguments, environ, AT_EMPTY_PATH);
    }
    return false;
}

bool canReadProcessMemory(pid_t)
{
    char from = 'x';
    char to = 0;
    const iovec source = {&from, 1};
    const iovec target = {&to, 1};
    return process_vm_readv(getpid(), &target, 1, &source, 1, 0) == 1;
}

// By way of the signals about a pipe.
bool canSendSignalsOfFiles(pid_t other)
{
    int ends[2];
    return pipe(ends) == 0 && fcntl(ends[0], F_SETOWN, other) == 0;
}

bool canOpenPerformanceEvents(pid_t)
{
    perf_event_attr event = {};
    event.size = sizeof event;
    event.type = PERF_TYPE_SOFTWARE;
    event.config = PERF_COUNT_SW_TASK_CLOCK;
    event.exclude_kernel = 1;
    return syscall(SYS_perf_event_open, &event, 0, -1, -1, 0) >= 0;
}

bool canMakeMap(pid_t)
{
    bpf_attr map = {};
    map.map_type = BPF_MAP_TYPE_ARRAY;
    map.key_size = 4;
    map.value_size = 4;
    map.max_entries = 1;
    return syscall(SYS_bpf, BPF_MAP_CREATE, &map, sizeof map) >= 0;
}

bool canMakeRing(pid_t)
{
    io_uring_params parameters = {};
    return syscall(SYS_io_uring_setup, 1, &parameters) >= 0;
}

// Names nothing there is: the kernel gets as far as to say so, or it is denied before.
bool canCall(long call)
{
    return syscall(call, -1, -1, -1, -1, -1, -1) == 0 || errno != EPERM;
}

} // namespace

std::map<std::string, std::function<bool(pid_t)>> callAttempts()
{
    return {
        {"call-fchmod", [](pid_t) { return canCall(SYS_fchmod); }},
        {"call-fchmodat", [](pid_t) { return canCall(SYS_fchmodat); }},
        {"call-chown", [](pid_t) { return canCall(SYS_chown); }},
        {"call-fchown", [](pid_t) { return canCall(SYS_fchown); }},
        {"call-lchown", [](pid_t) { return canCall(SYS_lchown); }},
        {"call-fchownat", [](pid_t) { return canCall(SYS_fchownat); }},
        {"call-utimensat", [](pid_t) { return canCall(SYS_utimensat); }},
        {"call-setxattr", [](pid_t) { return canCall(SYS_setxattr); }},
        {"call-lsetxattr", [](pid_t) { return canCall(SYS_lsetxattr); }},
        {"call-fsetxattr", [](pid_t) { return canCall(SYS_fsetxattr); }},
        {"call-removexattr", [](pid_t) { return canCall(SYS_removexattr); }},
        {"call-lremovexattr", [](pid_t) { return canCall(SYS_lremovexattr); }},
        {"call-fremovexattr", [](pid_t) { return canCall(SYS_fremovexattr); }},
        {"call-symlink", [](pid_t) { return canCall(SYS_symlink); }},
        {"call-symlinkat", [](pid_t) { return canCall(SYS_symlinkat); }},
        {"call-linkat", [](pid_t) { return canCall(SYS_linkat); }},
        {"call-mknodat", [](pid_t) { return canCall(SYS_mknodat); }},
        {"tkill", [](pid_t other) { return syscall(SYS_tkill, other, 0) == 0; }},
        {"tgkill", [](pid_t other) { return syscall(SYS_tgkill, other, other, 0) == 0; }},
        {"own-tgkill", [](pid_t) { return syscall(SYS_tgkill, getpid(), getpid(), 0) == 0; }},
        {"queue-signal", canQueueSignal},
        {"pidfd", [](pid_t other) { return syscall(SYS_pidfd_open, other, 0) >= 0; }},
        {"file-signals", canSendSignalsOfFiles},
        {"off-the-leash", [](pid_t) { return prctl(PR_SET_PDEATHSIG, 0) == 0; }},
        {"subreaper", [](pid_t) { return prctl(PR_SET_CHILD_SUBREAPER, 1) == 0; }},
        {"dumpable", [](pid_t) { return prctl(PR_SET_DUMPABLE, 1) == 0; }},
        {"own-name", [](pid_t) { return prctl(PR_SET_NAME, "engine") == 0; }},
        {"limits", canReadOtherLimits},
        {"priority", canSetPriority},
        {"disk-priority", canSetDiskPriority},
        {"processors", canSetProcessors},
        {"scheduler", canSetScheduler},
        {"process-memory", canReadProcessMemory},
        {"trace", [](pid_t) { return ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0; }},
        {"compare",
         [](pid_t) { return syscall(SYS_kcmp, getpid(), getpid(), KCMP_VM, 0, 0) == 0; }},
        {"performance-events", canOpenPerformanceEvents},
        {"bpf", canMakeMap},
        {"userfaultfd", [](pid_t) { return syscall(SYS_userfaultfd, UFFD_USER_MODE_ONLY) >= 0; }},
        {"io-uring", canMakeRing},
        {"keys",
         [](pid_t) {
             return syscall(SYS_keyctl, KEYCTL_GET_KEYRING_ID, KEY_SPEC_PROCESS_KEYRING, 1) >= 0;
         }},
        {"inotify", [](pid_t) { return inotify_init1(0) >= 0; }},
        {"fanotify", [](pid_t) { return canCall(SYS_fanotify_mark); }},
        {"own-limits", canSetOwnLimit},
        {"own-limits-by-number", canSetLimitByNumber},
        {"other-program", canBecomeOtherProgram},
        {"memory-file", [](pid_t) { return memfd_create("engine", 0) >= 0; }},
    };
}
