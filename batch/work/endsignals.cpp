#include "endsignals.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace batch {

namespace {

constexpr int endSignals[] = {SIGINT, SIGTERM};

volatile std::sig_atomic_t firstSignal = 0;
int wakePipe[2] = {-1, -1};

void wake(int signal)
{
    const int error = errno;
    if (firstSignal == 0)
        firstSignal = signal;
    [[maybe_unused]] const ssize_t written = write(wakePipe[1], "", 1);
    errno = error;
}

void handle(int signal, void (*handler)(int))
{
    struct sigaction before = {};
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigfillset(&action.sa_mask);
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
        sigaction(signal, &action, nullptr);
}

} // namespace

EndSignals::EndSignals(QObject *parent)
    : QObject(parent)
{
    if (pipe(wakePipe) != 0)
        qFatal("no pipe");
    for (const int end : wakePipe) {
        fcntl(end, F_SETFL, O_NONBLOCK);
        fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    const auto *notifier = new QSocketNotifier(wakePipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &EndSignals::read);
    for (const int signal : endSignals)
        handle(signal, wake);
}

EndSignals::~EndSignals()
{
    for (const int signal : endSignals)
        handle(signal, SIG_DFL);
    for (const int end : wakePipe)
        close(end);
}

int EndSignals::first()
{
    return firstSignal;
}

// One emission for each signal: two that came together are a first and a second one.
void EndSignals::read()
{
    char byte = 0;
    while (::read(wakePipe[0], &byte, 1) == 1)
        emit came();
}

} // namespace batch
