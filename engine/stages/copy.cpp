#include "copy.h"

#include "confinement/confinement.h"
#include "confinement/memorylimit.h"
#include "copymaker.h"
#include "formats/marktexts.h"
#include "process/channels.h"
#include "process/signals.h"
#include "system/failure.h"
#include "system/filesize.h"
#include "system/writing.h"

#include <charconv>
#include <unistd.h>

namespace engine {

namespace {

std::optional<int> numberIn(const std::string &text)
{
    int number = 0;
    const auto end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

// Of the mark; empty if there is none.
std::string beginningOf(int file)
{
    std::string text(std::size_t(1) << 16, '\0');
    const ssize_t count = pread(file, text.data(), text.size(), 0);
    text.resize(count > 0 ? std::size_t(count) : 0);
    return text;
}

std::string objectionOf(const CopyOrder &order)
{
    try {
        return makeCopy(order);
    } catch (const std::exception &error) {
        return error.what();
    }
}

// What corvgs is told about a copy that is made; anything else is why there is none.
std::string receiptFor(std::uintmax_t bytes)
{
    return "copy of " + std::to_string(bytes) + " bytes";
}

int makeConfined(const CopyOrder &order, const Limits &limits)
{
    AccessPolicy policy;
    policy.readableDescriptors = {documentChannel, ghostscriptOutputChannel};
    policy.writableDescriptors = {draftChannel};
    confine(policy);
    limitOwnMemory(limits.memory);
    const std::string objection = objectionOf(order);
    writeAll(reportChannel, objection.empty() ? receiptFor(sizeOf(draftChannel)) : objection);
    return 0;
}

void expectCopy(const ChildResult &result, const std::string &input, int draft)
{
    if (result.interrupted)
        throw Failure("ended by a signal", 128 + signals::endRequest());
    if (!result.violation.empty() || result.signal != 0 || result.status != 0)
        throw Failure(input + ": the document breaks whoever reads it");
    if (result.report != receiptFor(sizeOf(draft)))
        throw Failure(input + ": " + (result.report.empty() ? "no copy was made" : result.report));
}

} // namespace

void finish(const Request &request, const RunFiles &files, const ChildResult &ghostscript,
            const Limits &limits)
{
    const CopyOrder order = {
        .document = documentChannel,
        .rewriting = ghostscriptOutputChannel,
        .copy = draftChannel,
        .passwords = request.passwords,
        .permissions = request.permissions,
        .options = request.options,
        .changes = request.passwords.areSet() || !request.mark.empty(),
        .marked = markTexts(beginningOf(files.mark)),
        .pagesWritten = numberIn(ghostscript.report),
        .warned = ghostscript.warned,
    };
    ChildTask task;
    task.name = "libqpdf";
    task.channels = {{draftChannel, files.draft},
                     {documentChannel, files.document},
                     {ghostscriptOutputChannel, files.ghostscriptOutput}};
    task.body = [&] { return makeConfined(order, limits); };
    task.written = [&] { return sizeOf(files.draft); };
    task.mostWritten = limits.outputFor(sizeOf(files.document));
    task.disks = {files.draft};
    expectCopy(run(std::move(task), limits), request.input, files.draft);
}

} // namespace engine
