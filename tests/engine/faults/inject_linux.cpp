// Runs a program and lets one system call of it, or of its children, fail:
//
//   corvane_inject count PROGRAM ARGUMENT...
//       Prints, on the descriptor 9, how often each process made each of the calls below: "0 write
//       12". Only files that were open for writing count as closed. Processes are numbered in the
//       order in which they are forked; 0 is the program itself.
//   corvane_inject PROCESS CALL N ERROR PROGRAM ARGUMENT...
//       The N-th such call of that process, from 1, fails with the error (ENOSPC, ...). A close is
//       carried out and fails all the same.
//   corvane_inject PROCESS CALL N KILL PROGRAM ARGUMENT...
//       The program itself gets SIGKILL when that call begins.
//
// Ends as the program does; 128 and the signal's number if a signal ended it, 99 if it could not be
// traced, 98 if the call never came.

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <seccomp.h>
#include <string>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int cannotTrace = 99;
constexpr int neverCame = 98;
constexpr int reportDescriptor = 9;

const std::map<long, std::string> calls = {
    {SYS_write, "write"},   {SYS_pwrite64, "pwrite64"},   {SYS_writev, "writev"},
    {SYS_fsync, "fsync"},   {SYS_ftruncate, "ftruncate"}, {SYS_fdatasync, "fdatasync"},
    {SYS_linkat, "linkat"}, {SYS_renameat, "renameat"},   {SYS_renameat2, "renameat2"},
    {SYS_close, "close"},
};

const std::map<std::string, int> errors = {
    {"ENOSPC", ENOSPC}, {"EIO", EIO}, {"EDQUOT", EDQUOT}, {"EFBIG", EFBIG}};

struct Fault
{
    int process = -1;
    std::string call;
    int number = 0;
    int error = 0; ///< 0: a kill
};

struct Tracee
{
    int number = 0;
    bool fails = false; ///< the call that it is in, at its end
    bool hasStopped = false;
};

// Nothing is lost when a library or a pipe is closed.
bool isWrittenFile(pid_t process, int descriptor)
{
    const std::string place = "/proc/" + std::to_string(process);
    struct stat entry = {};
    if (stat((place + "/fd/" + std::to_string(descriptor)).c_str(), &entry) != 0 ||
        !S_ISREG(entry.st_mode))
        return false;
    std::ifstream information(place + "/fdinfo/" + std::to_string(descriptor));
    for (std::string word; information >> word;) {
        if (word == "flags:" && information >> word)
            return (std::stoi(word, nullptr, 8) & O_ACCMODE) != O_RDONLY;
    }
    return false;
}

bool stopAtCalls()
{
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
    for (const auto &[call, name] : calls) {
        if (seccomp_rule_add(filter, SCMP_ACT_TRACE(0), static_cast<int>(call), 0) != 0)
            return false;
    }
    return filter && seccomp_load(filter) == 0;
}

class Tracer
{
public:
    explicit Tracer(Fault fault)
        : m_fault(std::move(fault))
    {
    }

    int run(char *argv[])
    {
        m_program = fork();
        if (m_program == 0) {
            ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            kill(getpid(), SIGSTOP);
            if (stopAtCalls())
                execv(argv[0], argv);
            _exit(cannotTrace);
        }
        int status = 0;
        if (waitpid(m_program, &status, 0) != m_program || !WIFSTOPPED(status))
            return cannotTrace;
        constexpr long options = PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK |
                                 PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC | PTRACE_O_TRACESECCOMP |
                                 PTRACE_O_EXITKILL;
        if (ptrace(PTRACE_SETOPTIONS, m_program, nullptr, options) != 0)
            return cannotTrace;
        start(m_program);
        resume(m_program);
        serve();
        return m_fault.process >= 0 && !m_done ? neverCame : m_status;
    }

    void report() const
    {
        for (const auto &[key, count] : m_counts)
            dprintf(reportDescriptor, "%d %s %d\n", key.first, key.second.c_str(), count);
    }

private:
    Tracee &start(pid_t process)
    {
        const auto [entry, isNew] = m_tracees.try_emplace(process);
        if (isNew)
            entry->second.number = m_started++;
        return entry->second;
    }

    // To the next call that counts, or to the end of the one that it is in.
    static void resume(pid_t process, bool toEndOfCall = false, int signal = 0)
    {
        ptrace(toEndOfCall ? PTRACE_SYSCALL : PTRACE_CONT, process, nullptr, signal);
    }

    void serve()
    {
        int status = 0;
        for (pid_t process = 0; (process = waitpid(-1, &status, __WALL)) > 0;) {
            if (WIFSTOPPED(status))
                stopped(process, status);
            else
                ended(process, status);
        }
    }

    void ended(pid_t process, int status)
    {
        m_tracees.erase(process);
        if (process == m_program)
            m_status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    }

    void stopped(pid_t process, int status)
    {
        const int signal = WSTOPSIG(status);
        Tracee &tracee = start(process);
        const bool isNew = !std::exchange(tracee.hasStopped, true);
        if (isFork(status))
            start(childOf(process));
        if (status >> 8 == (SIGTRAP | PTRACE_EVENT_SECCOMP << 8))
            begin(process, tracee);
        else if (signal == (SIGTRAP | 0x80) && std::exchange(tracee.fails, false))
            setResult(process, false);
        // A stop at birth, or on the way into a new program, is no signal of its own.
        const bool isTracing = signal == (SIGTRAP | 0x80) || status >> 16 != 0 ||
                               signal == SIGTRAP || (isNew && signal == SIGSTOP);
        resume(process, tracee.fails, isTracing ? 0 : signal);
    }

    static bool isFork(int status)
    {
        const int event = status >> 16;
        return event == PTRACE_EVENT_FORK || event == PTRACE_EVENT_VFORK ||
               event == PTRACE_EVENT_CLONE;
    }

    static pid_t childOf(pid_t process)
    {
        unsigned long child = 0;
        ptrace(PTRACE_GETEVENTMSG, process, nullptr, &child);
        return static_cast<pid_t>(child);
    }

    void setResult(pid_t process, bool insteadOfTheCall) const
    {
        user_regs_struct registers = {};
        ptrace(PTRACE_GETREGS, process, nullptr, &registers);
        if (insteadOfTheCall)
            registers.orig_rax = static_cast<unsigned long long>(-1);
        registers.rax = static_cast<unsigned long long>(-static_cast<long long>(m_fault.error));
        ptrace(PTRACE_SETREGS, process, nullptr, &registers);
    }

    void begin(pid_t process, Tracee &tracee)
    {
        user_regs_struct registers = {};
        ptrace(PTRACE_GETREGS, process, nullptr, &registers);
        const auto call = calls.find(static_cast<long>(registers.orig_rax));
        if (call == calls.end() ||
            (call->first == SYS_close && !isWrittenFile(process, static_cast<int>(registers.rdi))))
            return;
        const int number = ++m_counts[{tracee.number, call->second}];
        if (tracee.number != m_fault.process || call->second != m_fault.call ||
            number != m_fault.number)
            return;
        m_done = true;
        if (m_fault.error == 0)
            kill(m_program, SIGKILL);
        else if (call->first == SYS_close)
            tracee.fails = true;
        else
            setResult(process, true);
    }

    Fault m_fault;
    pid_t m_program = -1;
    int m_started = 0;
    int m_status = cannotTrace;
    bool m_done = false;
    std::map<pid_t, Tracee> m_tracees;
    std::map<std::pair<int, std::string>, int> m_counts;
};

} // namespace

int main(int argc, char *argv[])
{
    if (argc > 2 && std::strcmp(argv[1], "count") == 0) {
        Tracer tracer({});
        const int status = tracer.run(argv + 2);
        tracer.report();
        return status;
    }
    if (argc < 6)
        return cannotTrace;
    const auto error = errors.find(argv[4]);
    return Tracer({std::atoi(argv[1]), argv[2], std::atoi(argv[3]),
                   error == errors.end() ? 0 : error->second})
        .run(argv + 5);
}
