#include "confinedtask.h"

#include "confinement/confinement.h"
#include "confinement/memorylimit.h"
#include "process/channels.h"
#include "process/signals.h"
#include "system/filesize.h"
#include "system/progress.h"
#include "system/writing.h"

#include <algorithm>

namespace engine {

namespace {

// The first letter tells facts from an objection.
constexpr char factsSign = '+';
constexpr char objectionSign = '-';

std::string answerTo(const std::function<Facts()> &work)
{
    try {
        return factsSign + linesOf(work());
    } catch (const std::exception &error) {
        return std::string(1, objectionSign) + error.what();
    }
}

// It reads and writes what is open, and opens nothing.
int workConfined(const Limits &limits, const std::function<Facts()> &work)
{
    limitOwnMemory(limits.memory);
    confine({});
    reportProgressTo(reportChannel);
    writeAll(reportChannel, answerTo(work));
    return 0;
}

std::uintmax_t bytesIn(const std::vector<std::pair<int, int>> &files)
{
    std::uintmax_t bytes = 0;
    for (const auto &[channel, descriptor] : files)
        bytes += sizeOf(descriptor);
    return bytes;
}

ChildTask taskOf(const ConfinedFiles &files, std::uintmax_t documentSize, const Limits &limits,
                 std::function<Facts()> work)
{
    ChildTask task;
    task.channels = files.readable;
    task.channels.insert(task.channels.end(), files.writable.begin(), files.writable.end());
    task.body = [limits, work = std::move(work)] { return workConfined(limits, work); };
    task.written = [files] { return bytesIn(files.writable); };
    task.mostWritten = limits.outputFor(documentSize);
    for (const auto &[channel, descriptor] : files.writable)
        task.disks.push_back(descriptor);
    return task;
}

} // namespace

ChildResult runConfined(const Run &run, const ConfinedFiles &files, std::function<Facts()> work)
{
    return run.children.wait(run.children.start(
        taskOf(files, sizeOf(run.document), run.settings.limits, std::move(work))));
}

Failure crashOver(const std::string &document)
{
    return Failure(document + ": the process that reads it crashed");
}

std::string objectionIn(const ChildResult &result, const std::string &document)
{
    if (result.interrupted)
        throw Failure("ended by a signal", 128 + signals::endRequest());
    if (!result.violation.empty())
        throw Failure(document + ": the process that reads it " + result.violation);
    const std::string &report = result.report;
    if (result.signal != 0 || result.status != 0 || report.empty())
        throw crashOver(document);
    return report.front() == objectionSign ? report.substr(1) : std::string();
}

Facts answerOf(const ChildResult &result, const std::string &document)
{
    const std::string reason = objectionIn(result, document);
    const auto answer = factsOf(result.report.substr(1));
    if (!reason.empty())
        throw Failure(document + ": " + reason);
    if (!answer)
        throw crashOver(document);
    return *answer;
}

Facts factsFrom(const Run &run, const ConfinedFiles &files, std::function<Facts()> work)
{
    return answerOf(runConfined(run, files, std::move(work)), run.request.input);
}

std::uintmax_t sizeIn(const Facts &facts, int file)
{
    const auto size = std::uintmax_t(valueOf(facts, "size"));
    if (size == 0 || size != sizeOf(file))
        throw Failure("not every byte of the copy got to the disk");
    return size;
}

} // namespace engine
