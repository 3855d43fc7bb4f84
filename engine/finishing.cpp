#include "finishing.h"

#include "channels.h"
#include "confinement.h"
#include "failure.h"
#include "filesize.h"
#include "marktexts.h"
#include "memorylimit.h"
#include "pdf/copymaker.h"
#include "signals.h"

#include <charconv>
#include <cstdio>
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

// What there is to object goes back through the channel; nothing is consent.
int makeConfined(const CopyOrder &order, const Limits &limits)
{
    Reach reach;
    reach.readableDescriptors = {documentChannel, interpretationChannel};
    reach.writableDescriptors = {draftChannel};
    confine(reach);
    limitOwnMemory(limits.memory);
    dprintf(reportChannel, "%s", objectionOf(order).c_str());
    return 0;
}

void expect(const Ending &ending, const std::string &input)
{
    if (ending.interrupted)
        throw Failure("ended by a signal", 128 + signals::endRequest());
    if (!ending.offence.empty() || ending.signal != 0 || ending.status != 0)
        throw Failure(input + ": the document breaks whoever reads it");
    if (!ending.report.empty())
        throw Failure(input + ": " + ending.report);
}

} // namespace

void finish(const Job &job, const Material &material, const Ending &ghostscript,
            const Limits &limits)
{
    const CopyOrder order = {
        documentChannel,
        interpretationChannel,
        draftChannel,
        job.password,
        job.passwords,
        job.wishes,
        markTexts(beginningOf(material.mark)),
        numberIn(ghostscript.report),
        ghostscript.doubted,
    };
    Work work;
    work.channels = {{draftChannel, material.draft},
                     {documentChannel, material.document},
                     {interpretationChannel, material.interpretation}};
    work.body = [&] { return makeConfined(order, limits); };
    work.written = [&] { return sizeOf(material.draft); };
    work.mostWritten = limits.outputFor(sizeOf(material.document));
    work.disks = {material.draft};
    expect(carryOut(work, limits), job.input);
}

} // namespace engine
