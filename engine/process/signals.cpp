#include "signals.h"

#include "system/failure.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace engine::signals {

namespace {

constexpr int endSignals[] = {SIGTERM, SIGINT, SIGHUP, SIGQUIT};

volatile std::sig_atomic_t lastEndRequest = 0;
int wakePipe[2] = {-1, -1};

void wake(int signal)
{
    const int error = errno;
    if (signal != SIGCHLD)
        lastEndRequest = signal;
    // A full pipe wakes as well as one byte more.
    [[maybe_unused]] const ssize_t written = write(wakePipe[1], "", 1);
    errno = error;
}

void handle(int signal)
{
    struct sigaction action = {};
    struct sigaction before = {};
    action.sa_handler = wake;
    action.sa_flags = SA_RESTART;
    sigfillset(&action.sa_mask);
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN &&
        signal != SIGCHLD)
        return;
    sigaction(signal, &action, nullptr);
}

// A mask is inherited: whoever blocked these would make an engine that nobody can end.
void unblock()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : endSignals)
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
    for (const int signal : endSignals)
        handle(signal);
    handle(SIGCHLD);
    unblock();
    std::signal(SIGPIPE, SIG_IGN);
}

void restoreAll()
{
    for (const int signal : endSignals)
        std::signal(signal, SIG_DFL);
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
