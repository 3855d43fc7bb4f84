#include "callfilter_linux.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <sched.h>
#include <seccomp.h>

namespace engine {

namespace {

// By name, because the library's and the kernel's idea of what exists differ by age; an unknown
// name is passed over.
constexpr const char *deniedCalls[] = {
    // the network, and the other way to it
    "socket", "socketpair", "io_uring_setup", "io_uring_enter", "io_uring_register",
    // other programs and processes
    "execve", "fork", "vfork", "kill", "pidfd_open", "pidfd_send_signal", "pidfd_getfd", "ptrace",
    "process_vm_readv", "process_vm_writev", "kcmp", "tkill", "rt_sigqueueinfo",
    "rt_tgsigqueueinfo", "setpgid", "setsid",
    // what Landlock doesn't know of files
    "chmod", "fchmod", "fchmodat", "fchmodat2", "chown", "fchown", "lchown", "fchownat", "utime",
    "utimes", "utimensat", "futimesat", "setxattr", "lsetxattr", "fsetxattr", "setxattrat",
    "removexattr", "lremovexattr", "fremovexattr", "removexattrat", "truncate", "link", "linkat",
    "symlink", "symlinkat", "mknod", "mknodat",
    // the rest of the machine
    "mount", "umount2", "move_mount", "open_tree", "fsopen", "fsmount", "fspick", "mount_setattr",
    "pivot_root", "chroot", "unshare", "setns", "open_by_handle_at", "name_to_handle_at", "bpf",
    "perf_event_open", "userfaultfd", "keyctl", "add_key", "request_key", "memfd_secret",
    "init_module", "finit_module", "delete_module", "kexec_load", "kexec_file_load", "reboot",
    "swapon", "swapoff", "sethostname", "setdomainname", "clock_settime", "settimeofday", "shmget",
    "shmat", "msgget", "semget", "mq_open"};

using Filter = std::unique_ptr<void, decltype(&seccomp_release)>;

bool deny(const Filter &filter, const char *name, int error = EPERM)
{
    const int call = seccomp_syscall_resolve_name(name);
    if (call == __NR_SCMP_ERROR)
        return true;
    const int result = seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(unsigned(error)), call, 0);
    // Minus the number of a call that this processor's Linux doesn't have.
    return result == 0 || result == -EDOM || call < 0;
}

// Leaves the one call with which the program is started, by its descriptor, which closes on the
// way. A filter can't see whether a path comes with it; that is up to the file rules.
bool denyOtherPrograms(const Filter &filter, int program)
{
    if (program < 0)
        return deny(filter, "execveat");
    const auto other = SCMP_A0(SCMP_CMP_NE, scmp_datum_t(program));
    const auto byPath = SCMP_A4(SCMP_CMP_NE, AT_EMPTY_PATH);
    const auto error = SCMP_ACT_ERRNO(EPERM);
    return seccomp_rule_add(filter.get(), error, SCMP_SYS(execveat), 1, other) == 0 &&
           seccomp_rule_add(filter.get(), error, SCMP_SYS(execveat), 1, byPath) == 0;
}

bool denyProcesses(const Filter &filter)
{
    // A thread is no new process. clone3 hides its flags from a filter; without it, the C library
    // takes clone.
    const auto noThread = SCMP_A0(SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0);
    return seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(EPERM), SCMP_SYS(clone), 1, noThread) ==
               0 &&
           deny(filter, "clone3", ENOSYS);
}

bool load(int program)
{
    const Filter filter(seccomp_init(SCMP_ACT_ALLOW), &seccomp_release);
    if (!filter)
        return false;
    for (const char *name : deniedCalls) {
        if (!deny(filter, name))
            return false;
    }
    return denyProcesses(filter) && denyOtherPrograms(filter, program) &&
           seccomp_load(filter.get()) == 0;
}

} // namespace

std::string filterCalls(int program)
{
    return load(program) ? "no network and no other programs (seccomp)"
                         : "no system call filter (the kernel has no seccomp)";
}

} // namespace engine
