#include "inspection.h"

#include "channels.h"
#include "child.h"
#include "confinement.h"
#include "failure.h"
#include "memorylimit.h"
#include "pages.h"
#include "signals.h"

#include <cstdio>
#include <sstream>

namespace engine {

namespace {

void report(const std::optional<int> &pages)
{
    dprintf(reportChannel, "%d\n", pages.value_or(-1));
}

// The copy first: reading the document may be the end of this process.
int reportPages(const std::string &password, const Limits &limits)
{
    Reach reach;
    reach.readableDescriptors = {documentChannel, draftChannel};
    confine(reach);
    limitOwnMemory(limits.memory);
    report(countPages(draftChannel, password, Trust::Own));
    report(countPages(documentChannel, {}, Trust::Foreign));
    return 0;
}

std::optional<int> nextNumber(std::istringstream &text)
{
    int number = -1;
    return text >> number && number >= 0 ? std::optional(number) : std::nullopt;
}

} // namespace

Evidence inspect(const Material &material, const std::string &password, const Limits &limits)
{
    Work work;
    work.channels = {{draftChannel, material.draft}, {documentChannel, material.document}};
    work.body = [&] { return reportPages(password, limits); };
    work.written = [] { return 0; };
    const Ending ending = carryOut(work, limits);
    if (ending.interrupted)
        throw Failure("ended by a signal", 128 + signals::endRequest());

    std::istringstream text(ending.report);
    Evidence evidence;
    evidence.pagesInCopy = nextNumber(text);
    evidence.pagesInDocument = nextNumber(text);
    return evidence;
}

} // namespace engine
