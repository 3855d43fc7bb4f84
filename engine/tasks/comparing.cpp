#include "comparing.h"

#include "confinement/confinement.h"
#include "confinement/memorylimit.h"
#include "process/channels.h"
#include "system/filesize.h"
#include "system/progress.h"
#include "system/writing.h"

#include <unistd.h>

namespace engine {

namespace {

// Millions of objects.
constexpr std::uintmax_t longestAnswer = 16 << 20;

int compareConfined(const Comparing &work, std::uintmax_t memory)
{
    limitOwnMemory(memory);
    confine({});
    reportProgressTo(reportChannel);
    try {
        writeAll(draftChannel, linesOf(work(copyReadingChannel, originalReadingChannel)));
        return 0;
    } catch (const std::exception &) {
        return 1;
    }
}

} // namespace

ChildTask comparingTask(int copy, int original, int answer, const Comparing &work,
                        std::uintmax_t memory)
{
    ChildTask task;
    task.name = "the comparison";
    task.channels = {
        {draftChannel, answer}, {copyReadingChannel, copy}, {originalReadingChannel, original}};
    task.body = [work, memory] { return compareConfined(work, memory); };
    task.disks = {answer};
    return task;
}

std::optional<Findings> answerIn(int file)
{
    const std::uintmax_t size = sizeOf(file);
    if (size > longestAnswer)
        return {};
    std::string text(std::size_t(size), '\0');
    if (pread(file, text.data(), text.size(), 0) != ssize_t(text.size()))
        return {};
    return findingsOf(text);
}

} // namespace engine
