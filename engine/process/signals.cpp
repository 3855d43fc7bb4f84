#include "signals.h"

#include "system/failure.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <iterator>
#include <unistd.h>
#include <vector>

namespace engine::signals {

namespace {

volatile std::sig_atomic_t lastEndRequest = 0;
int wakePipe[2] = {-1, -1};

// That a program makes itself, by a fault. From somebody else they are requests like all others.
bool isFault(int signal)
{
    constexpr int faults[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS};
    return std::find(std::begin(faults), std::end(faults), signal) != std::end(faults);
}

// All that end a program and that it can catch; SIGABRT does no more than it did when a program
// sends it to itself. Those in between the named and the real-time ones are the C library's own.
std::vector<int> endSignals()
{
    std::vector<int> signals = {SIGHUP,    SIGINT,  SIGQUIT, SIGILL,  SIGTRAP, SIGABRT,
                                SIGBUS,    SIGFPE,  SIGUSR1, SIGSEGV, SIGUSR2, SIGALRM,
                                SIGVTALRM, SIGTERM, SIGXCPU, SIGXFSZ, SIGPROF, SIGSYS};
#ifdef __linux__
    signals.insert(signals.end(), {SIGSTKFLT, SIGIO, SIGPWR});
    for (int signal = SIGRTMIN; signal <= SIGRTMAX; ++signal)
        signals.push_back(signal);
#endif
    return signals;
}

void wake()
{
    const int error = errno;
    // A full pipe wakes as well as one byte more.
    [[maybe_unused]] const ssize_t written = write(wakePipe[1], "", 1);
    errno = error;
}

void childEnded(int)
{
    wake();
}

// A fault comes again when the handler returns, and then ends the program as it always did.
void endRequested(int signal, siginfo_t *information, void *)
{
    if (isFault(signal) && information->si_code > 0) {
        std::signal(signal, SIG_DFL);
        return;
    }
    lastEndRequest = signal;
    wake();
}

struct sigaction actionFor(int signal)
{
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    return action;
}

bool isDefault(const struct sigaction &action)
{
    return (action.sa_flags & SA_SIGINFO) == 0 && action.sa_handler == SIG_DFL;
}

bool isOurs(const struct sigaction &action)
{
    return (action.sa_flags & SA_SIGINFO) != 0 && action.sa_sigaction == endRequested;
}

void catchEndSignal(int signal)
{
    if (!isDefault(actionFor(signal)))
        return;
    struct sigaction action = {};
    action.sa_sigaction = endRequested;
    action.sa_flags = SA_RESTART | SA_SIGINFO;
    sigfillset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

void catchChildEnds()
{
    struct sigaction action = {};
    action.sa_handler = childEnded;
    action.sa_flags = SA_RESTART | SA_NOCLDSTOP;
    sigfillset(&action.sa_mask);
    sigaction(SIGCHLD, &action, nullptr);
}

// A mask is inherited: whoever blocked these would make an engine that nobody can end.
void unblock()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : endSignals())
        sigaddset(&signals, signal);
    sigaddset(&signals, SIGCHLD);
    sigprocmask(SIG_UNBLOCK, &signals, nullptr);
}

} // namespace

void catchAll()
{
    if (pipe(wakePipe) != 0)
        throw Failure::ofSystem("no pipe");
    for (const int end : wakePipe) {
        fcntl(end, F_SETFL, O_NONBLOCK);
        fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    for (const int signal : endSignals())
        catchEndSignal(signal);
    catchChildEnds();
    unblock();
    std::signal(SIGPIPE, SIG_IGN);
}

void restoreAll()
{
    for (const int signal : endSignals()) {
        if (isOurs(actionFor(signal)))
            std::signal(signal, SIG_DFL);
    }
    std::signal(SIGCHLD, SIG_DFL);
    std::signal(SIGPIPE, SIG_DFL);
}

int wakeDescriptor()
{
    return wakePipe[0];
}

void clearWake()
{
    char bytes[64];
    while (read(wakePipe[0], bytes, sizeof bytes) > 0) {
    }
}

int endRequest()
{
    return lastEndRequest;
}

} // namespace engine::signals
