#include "memoryfile.h"

#include "batch/refusal.h"
#include "batch/report/history.h"
#include "batch/tally.h"

#include <string_view>

namespace {

// Whole lines are taken, and what a kill cut off is not.
void promiseEnd(std::string_view text, qint64 end)
{
    const auto length = static_cast<std::size_t>(end);
    promise(length <= text.size());
    promise(length == 0 || text[length - 1] == '\n');
    promise(text.find('\n', length) == std::string_view::npos);
}

void promiseLineComesBack(const batch::Result &result)
{
    const auto line = batch::parseLine(batch::resultLine(result, {}));
    promise(line && line->event == batch::Line::Event::result);
    promise(line->result.input == result.input && line->result.reason == result.reason);
    promise(line->result.before == result.before && line->result.after == result.after);
    promise(line->result.succeeded == result.succeeded && line->result.seconds == result.seconds);
}

void addUp(const batch::History &history)
{
    batch::Tally tally;
    for (const batch::Result &result : history.results) {
        promiseLineComesBack(result);
        tally.take(result);
    }
    promise(tally.files() == history.results.size());
    promise(!tally.text(history.begun.size()).isEmpty());
    promise(tally.line(history.begun.size()).endsWith('\n'));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const MemoryFile report(data, size);
    QFile file(report.path());
    promise(file.open(QIODevice::ReadOnly));
    batch::History history;
    try {
        promiseEnd(textOf(data, size), batch::readReport(file, history));
    } catch (const batch::Refusal &) {
        return 0;
    }
    addUp(history);
    return 0;
}
