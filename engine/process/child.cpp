#include "child.h"

#include "channels.h"
#include "diskwatch.h"
#include "relay.h"
#include "signals.h"
#include "stallwatch.h"
#include "system/failure.h"
#include "system/platform.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <limits>
#include <poll.h>
#include <sys/wait.h>

namespace engine {

namespace {

constexpr int tick = 250; // ms between two looks at what the child has used up
constexpr std::size_t reportRoom = 4096;

// In two steps, because one channel's number may be another one's descriptor. The child has nothing
// else open: no rule keeps it from what it has inherited.
void placeChannels(std::vector<std::pair<int, int>> channels)
{
    for (auto &[channel, descriptor] : channels)
        descriptor = fcntl(descriptor, F_DUPFD_CLOEXEC, firstFreeChannel);
    platform::closeRange(STDERR_FILENO + 1, firstFreeChannel - 1);
    for (const auto &[channel, descriptor] : channels)
        dup2(descriptor, channel);
    platform::closeRange(firstFreeChannel, std::numeric_limits<int>::max());
    fcntl(programChannel, F_SETFD, FD_CLOEXEC);
}

struct Lines
{
    explicit Lines(std::string_view warning)
        : output(Relay::to(MessageWriter(STDOUT_FILENO), warning))
        , errors(Relay::to(MessageWriter(STDERR_FILENO), warning))
    {
    }

    Relay output;
    Relay errors;
    Relay report = Relay::keeping(reportRoom);

    std::array<Relay *, 3> all() { return {&output, &errors, &report}; }
};

// Not to be left by an exception: what it would clean up on its way belongs to the parent.
[[noreturn]] void becomeChild(const ChildTask &task, const Lines &lines, pid_t parent) noexcept
{
    platform::dieWithParent(parent);
    setpgid(0, 0);
    signals::restoreAll();
    const Descriptor nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
    auto channels = task.channels;
    channels.emplace_back(STDIN_FILENO, nothing.get());
    channels.emplace_back(STDOUT_FILENO, lines.output.writeEnd());
    channels.emplace_back(STDERR_FILENO, lines.errors.writeEnd());
    channels.emplace_back(reportChannel, lines.report.writeEnd());
    placeChannels(channels);
    _exit(task.body());
}

// The group as well: without confinement, the child may have children.
void endChild(pid_t child)
{
    kill(child, SIGKILL);
    kill(-child, SIGKILL);
}

// Leaves the ended child as it is: as long as nobody has asked for its status, no other process
// gets its number, nor another group.
bool hasEnded(pid_t child)
{
    siginfo_t state = {};
    return waitid(P_PID, id_t(child), &state, WEXITED | WNOHANG | WNOWAIT) != 0 ||
           state.si_pid == child;
}

int statusOf(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

void listen(Lines &lines)
{
    std::array<pollfd, 4> ready = {};
    for (std::size_t index = 0; Relay * relay : lines.all())
        ready[index++] = {relay->readEnd(), POLLIN, 0};
    ready.back() = {signals::wakeDescriptor(), POLLIN, 0};
    poll(ready.data(), ready.size(), tick);
    signals::clearWake();
    for (Relay *relay : lines.all())
        relay->takeAll();
}

class Watch
{
public:
    Watch(pid_t child, const ChildTask &task, const Limits &limits)
        : m_child(child)
        , m_task(task)
        , m_stall(limits.stall)
        , m_disk(task.disks, limits.reserve)
    {
    }

    // Ends the child where it has to be ended, and says so in the result.
    void look(ChildResult &result)
    {
        result.interrupted = signals::endRequest() != 0;
        const auto now = std::chrono::steady_clock::now();
        if (now >= m_nextLook) {
            m_nextLook = now + std::chrono::milliseconds(tick);
            result.violation = violation();
        }
        if (result.interrupted || !result.violation.empty())
            endChild(m_child);
    }

private:
    std::string violation()
    {
        const std::uintmax_t written = m_task.written();
        if (written > m_task.mostWritten)
            return "wrote far more than a copy of the document takes";
        if (m_disk.isFillingUp())
            return "was about to fill the disk";
        const auto burnt = platform::processorTimeOf(m_child);
        if (burnt && m_stall.isStalled(*burnt, written))
            return "used up its time without writing anything";
        return {};
    }

    pid_t m_child;
    const ChildTask &m_task;
    StallWatch m_stall;
    DiskWatch m_disk;
    std::chrono::steady_clock::time_point m_nextLook = std::chrono::steady_clock::now();
};

} // namespace

ChildResult run(const ChildTask &task, const Limits &limits)
{
    Lines lines(task.warning);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0)
        throw Failure::ofSystem("no process for the engine");
    if (child == 0)
        becomeChild(task, lines, parent);
    for (Relay *relay : lines.all())
        relay->closeWriteEnd();

    ChildResult result;
    Watch watch(child, task, limits);
    while (!hasEnded(child)) {
        listen(lines);
        if (result.violation.empty())
            watch.look(result);
    }
    kill(-child, SIGKILL); // whom it left behind
    const int status = statusOf(child);
    for (Relay *relay : lines.all())
        relay->takeAll();
    result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    result.status = result.signal != 0 ? 128 + result.signal : WEXITSTATUS(status);
    result.warned = lines.output.hasSeenPhrase() || lines.errors.hasSeenPhrase();
    result.report = lines.report.kept();
    return result;
}

} // namespace engine
