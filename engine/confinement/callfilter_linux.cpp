#include "callfilter_linux.h"

#include "sanitizer.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace engine {

namespace {

// By name, because the library's and the kernel's idea of what exists differ by age; an unknown
// name is passed over.
constexpr const char *deniedCalls[] = {
    // the network, and the other way to it
    "socket", "socketpair", "io_uring_setup", "io_uring_enter", "io_uring_register",
    // other programs and processes
    "kill", "pidfd_open", "pidfd_send_signal", "pidfd_getfd", "ptrace", "process_vm_readv",
    "process_vm_writev", "process_madvise", "process_mrelease", "kcmp", "tkill", "rt_sigqueueinfo",
    "rt_tgsigqueueinfo", "setpgid", "setsid", "setpriority", "ioprio_set", "sched_setaffinity",
    "sched_setattr", "sched_setparam", "sched_setscheduler", "migrate_pages", "move_pages",
    "get_robust_list",
    // a program of its own making
    "memfd_create",
    // what Landlock doesn't know of files
    "chmod", "fchmod", "fchmodat", "fchmodat2", "chown", "fchown", "lchown", "fchownat", "utime",
    "utimes", "utimensat", "futimesat", "setxattr", "lsetxattr", "fsetxattr", "setxattrat",
    "removexattr", "lremovexattr", "fremovexattr", "removexattrat", "truncate", "link", "linkat",
    "symlink", "symlinkat", "mknod", "mknodat",
    // what others do with files, and limits of its own
    "inotify_init", "inotify_init1", "inotify_add_watch", "fanotify_mark", "setrlimit",
    // the rest of the machine
    "mount", "umount2", "move_mount", "open_tree", "fsopen", "fsmount", "fspick", "mount_setattr",
    "pivot_root", "chroot", "unshare", "setns", "open_by_handle_at", "name_to_handle_at", "bpf",
    "perf_event_open", "userfaultfd", "fanotify_init", "acct", "quotactl", "syslog", "iopl",
    "ioperm", "keyctl", "add_key", "request_key", "memfd_secret", "init_module", "finit_module",
    "delete_module", "kexec_load", "kexec_file_load", "reboot", "swapon", "swapoff", "sethostname",
    "setdomainname", "clock_settime", "settimeofday", "shmget", "shmat", "msgget", "semget",
    "mq_open",
    // some of these again, as they are called on 32 bits
    "chown32", "fchown32", "lchown32", "truncate64", "utimensat_time64", "umount",
    "clock_settime64", "stime"};

// For a process that becomes no program. Some by the names that they have on other processors.
constexpr const char *workCalls[] = {
    // files that are open
    "read", "readv", "pread64", "preadv", "write", "writev", "pwrite64", "pwritev", "lseek",
    "_llseek", "fstat", "fstat64", "newfstatat", "fstatat64", "statx", "ftruncate", "ftruncate64",
    "fsync", "fdatasync", "close", "dup", "dup2", "dup3", "fcntl", "fcntl64", "poll", "ppoll",
    // memory
    "brk", "mmap", "mmap2", "munmap", "mremap", "mprotect", "madvise",
    // itself
    "getpid", "gettid", "getuid", "geteuid", "getgid", "getegid", "futex", "futex_time64",
    "sched_yield", "getrandom", "clock_gettime", "clock_gettime64", "clock_getres", "gettimeofday",
    "time", "times", "getrusage", "rt_sigaction", "rt_sigprocmask", "rt_sigreturn", "sigreturn",
    "restart_syscall", "exit", "exit_group"};

struct Condition
{
    const char *call;
    scmp_arg_cmp argument;
};

// The library's macros for this are C.
constexpr scmp_arg_cmp argument(unsigned number, scmp_compare comparison, scmp_datum_t first,
                                scmp_datum_t second = 0)
{
    return {number, comparison, first, second};
}

// The kernel takes these arguments as 32 bits, whatever stands above them.
scmp_arg_cmp isCommand(std::uint32_t command)
{
    return argument(1, SCMP_CMP_MASKED_EQ, 0xffffffff, command);
}

// Calls that are denied only with such an argument.
std::vector<Condition> deniedArguments()
{
    return {
        // a signal to another process than this one, which is still this one as Ghostscript
        {"tgkill", argument(0, SCMP_CMP_NE, scmp_datum_t(getpid()))},
        // the same by way of a file
        {"fcntl", isCommand(F_SETOWN)},
        {"fcntl", isCommand(F_SETOWN_EX)},
        {"fcntl", isCommand(F_SETSIG)},
        {"fcntl64", isCommand(F_SETOWN)},
        {"fcntl64", isCommand(F_SETOWN_EX)},
        {"fcntl64", isCommand(F_SETSIG)},
        // typing into the terminal that corvgs was started from
        {"ioctl", isCommand(TIOCSTI)},
        {"ioctl", isCommand(TIOCLINUX)},
        // other processes' limits
        {"prlimit64", argument(0, SCMP_CMP_NE, 0)},
        // the signal that its end with corvgs sends, and everything else but the name of a thread
        {"prctl", argument(0, SCMP_CMP_LT, PR_SET_NAME)},
        {"prctl", argument(0, SCMP_CMP_GT, PR_GET_NAME)},
    };
}

using Filter = std::unique_ptr<void, decltype(&seccomp_release)>;

bool deny(const Filter &filter, const char *name, const std::vector<scmp_arg_cmp> &arguments = {},
          int error = EPERM)
{
    const int call = seccomp_syscall_resolve_name(name);
    if (call == __NR_SCMP_ERROR)
        return true;
    const int result = seccomp_rule_add_array(filter.get(), SCMP_ACT_ERRNO(unsigned(error)), call,
                                              unsigned(arguments.size()), arguments.data());
    // Minus the number of a call that this processor's Linux doesn't have.
    return result == 0 || result == -EDOM || call < 0;
}

// Leaves the one call with which the program is started, by its descriptor, which closes on the
// way and whose number no other file can get (limitDescriptors). A filter can't see whether a path
// comes with it; that is up to the file rules.
bool denyOtherPrograms(const Filter &filter, int program)
{
    if (program < 0)
        return deny(filter, "execve") && deny(filter, "execveat");
    return deny(filter, "execve") &&
           deny(filter, "execveat", {argument(0, SCMP_CMP_NE, scmp_datum_t(program))}) &&
           deny(filter, "execveat", {argument(4, SCMP_CMP_NE, AT_EMPTY_PATH)});
}

// A thread is no new process.
bool denyProcesses(const Filter &filter)
{
    return deny(filter, "fork") && deny(filter, "vfork") &&
           deny(filter, "clone", {argument(0, SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0)});
}

bool allow(const Filter &filter, const char *name, const std::vector<scmp_arg_cmp> &arguments = {})
{
    const int call = seccomp_syscall_resolve_name(name);
    return call < 0 || seccomp_rule_add_array(filter.get(), SCMP_ACT_ALLOW, call,
                                              unsigned(arguments.size()), arguments.data()) == 0;
}

// All that libqpdf takes, and what it stands on: to compute, to read and write what is open, and to
// end. No other call gets as far as the kernel.
bool loadForWork()
{
    const Filter filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)), &seccomp_release);
    if (!filter)
        return false;
    for (const char *name : workCalls) {
        if (!allow(filter, name))
            return false;
    }
    // Its own limits, to read them; and the end of its own making.
    return allow(filter, "prlimit64", {argument(0, SCMP_CMP_EQ, 0), argument(2, SCMP_CMP_EQ, 0)}) &&
           allow(filter, "tgkill", {argument(0, SCMP_CMP_EQ, scmp_datum_t(getpid()))}) &&
           seccomp_load(filter.get()) == 0;
}

bool startsPrograms(const AccessPolicy &policy)
{
    return policy.program >= 0 || policy.morePrograms;
}

// New limits of its own. With the sanitizer, that of memory can be set only after the filter is
// made; it can't be raised either.
bool denyLimits(const Filter &filter)
{
    std::vector<scmp_arg_cmp> arguments = {argument(2, SCMP_CMP_NE, 0)};
    if (hasSanitizer)
        arguments.push_back(argument(1, SCMP_CMP_NE, RLIMIT_AS));
    return deny(filter, "prlimit64", arguments);
}

bool load(const AccessPolicy &policy)
{
    if (!startsPrograms(policy) && !hasSanitizer)
        return loadForWork();
    const Filter filter(seccomp_init(SCMP_ACT_ALLOW), &seccomp_release);
    if (!filter)
        return false;
    for (const char *name : deniedCalls) {
        if (!deny(filter, name))
            return false;
    }
    for (const Condition &denied : deniedArguments()) {
        if (!deny(filter, denied.call, {denied.argument}))
            return false;
    }
    if (!denyLimits(filter))
        return false;
    if (!policy.morePrograms &&
        (!denyProcesses(filter) || !denyOtherPrograms(filter, policy.program)))
        return false;
    // It hides its flags from a filter; without it, the C library takes clone.
    return deny(filter, "clone3", {}, ENOSYS) && seccomp_load(filter.get()) == 0;
}

} // namespace

std::string filterCalls(const AccessPolicy &policy)
{
    return load(policy) ? "no network and no other programs (seccomp)"
                        : "no system call filter (the kernel has no seccomp)";
}

} // namespace engine
