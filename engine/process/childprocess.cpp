#include "childprocess.h"

#include "channels.h"
#include "signals.h"
#include "system/failure.h"
#include "system/platform.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>

namespace engine {

namespace {

constexpr std::chrono::milliseconds lookInterval(250);
constexpr std::size_t reportRoom = 4096;

// Of talk: a message for each page of a long book is less.
constexpr std::uintmax_t mostSaid = std::uintmax_t(4) << 20;

// In two steps, because one channel's number may be another one's descriptor. The child has nothing
// else open: no rule keeps it from what it has inherited.
void placeChannels(std::vector<std::pair<int, int>> channels)
{
    const bool hasProgram = std::any_of(channels.begin(), channels.end(), [](const auto &entry) {
        return entry.first == programChannel;
    });
    const int spare = hasProgram ? programChannel + 1 : int(firstFreeChannel);
    for (auto &[channel, descriptor] : channels)
        descriptor = fcntl(descriptor, F_DUPFD_CLOEXEC, spare);
    platform::closeRange(STDERR_FILENO + 1, spare - 1);
    for (const auto &[channel, descriptor] : channels)
        dup2(descriptor, channel);
    platform::closeRange(spare, std::numeric_limits<int>::max());
    fcntl(programChannel, F_SETFD, FD_CLOEXEC);
}

std::vector<std::string_view> phrasesOf(const ChildTask &task)
{
    return {task.warning, task.writeError};
}

} // namespace

ChildProcess::ChildProcess(ChildTask task, const Limits &limits)
    : m_task(std::move(task))
    , m_output(Relay::to(MessageWriter(STDOUT_FILENO), m_task.name, phrasesOf(m_task)))
    , m_errors(Relay::to(MessageWriter(STDERR_FILENO), m_task.name, phrasesOf(m_task)))
    , m_report(Relay::keeping(reportRoom))
    , m_stall(limits)
    , m_disk(m_task.disks, limits.reserve)
{
    const pid_t parent = getpid();
    m_process = fork();
    if (m_process < 0)
        throw Failure::ofSystem("no process for " + m_task.name);
    if (m_process == 0)
        become(parent);
    for (Relay *relay : relays())
        relay->closeWriteEnd();
}

ChildProcess::~ChildProcess()
{
    if (m_process < 0)
        return;
    end();
    collect();
}

// Not to be left by an exception: what it would clean up on its way belongs to the parent.
void ChildProcess::become(pid_t parent) noexcept
{
    platform::dieWithParent(parent);
    setpgid(0, 0);
    signals::restoreAll();
    const Descriptor nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
    auto channels = m_task.channels;
    channels.emplace_back(STDIN_FILENO, nothing.get());
    channels.emplace_back(STDOUT_FILENO, m_output.writeEnd());
    channels.emplace_back(STDERR_FILENO, m_errors.writeEnd());
    channels.emplace_back(reportChannel, m_report.writeEnd());
    placeChannels(channels);
    _exit(m_task.body());
}

// The group as well: without confinement, the child may have children.
void ChildProcess::end() const
{
    kill(m_process, SIGKILL);
    kill(-m_process, SIGKILL);
}

// As long as nobody has asked for an ended child's status, no other process gets its number, nor
// another group.
bool ChildProcess::hasEnded() const
{
    siginfo_t state = {};
    return waitid(P_PID, id_t(m_process), &state, WEXITED | WNOHANG | WNOWAIT) != 0 ||
           state.si_pid == m_process;
}

int ChildProcess::collect()
{
    int status = 0;
    while (waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
    }
    m_process = -1;
    return status;
}

std::uintmax_t ChildProcess::written() const
{
    return m_task.written ? m_task.written() : 0;
}

bool ChildProcess::hasSaid(std::string_view phrase) const
{
    return m_output.hasSeen(phrase) || m_errors.hasSeen(phrase);
}

std::string ChildProcess::violation()
{
    const std::uintmax_t bytes = written();
    if (bytes > m_task.mostWritten)
        return "wrote far more than a copy of the document takes";
    if (m_output.taken() + m_errors.taken() > mostSaid)
        return "talked without end";
    if (m_disk.isFillingUp())
        return "was about to fill the disk";
    const auto burnt = platform::processorTimeOf(m_process);
    if (burnt)
        return m_stall.objection(*burnt, {.bytes = bytes, .steps = m_report.marks()});
    return {};
}

void ChildProcess::look()
{
    for (Relay *relay : relays())
        relay->takeAll();
    if (!m_result.violation.empty())
        return;
    m_result.interrupted = signals::endRequest() != 0;
    const auto now = std::chrono::steady_clock::now();
    if (now >= m_nextLook) {
        m_nextLook = now + lookInterval;
        m_result.violation = violation();
    }
    if (m_result.interrupted || !m_result.violation.empty())
        end();
}

ChildResult ChildProcess::result()
{
    kill(-m_process, SIGKILL); // whom it left behind
    const int status = collect();
    for (Relay *relay : relays())
        relay->takeAll();
    m_result.name = m_task.name;
    m_result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    m_result.status = m_result.signal != 0 ? 128 + m_result.signal : WEXITSTATUS(status);
    m_result.warned = hasSaid(m_task.warning);
    m_result.couldNotWrite = hasSaid(m_task.writeError);
    m_result.report = m_report.kept();
    return std::move(m_result);
}

} // namespace engine
