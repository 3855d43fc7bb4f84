#include "finishedcopy.h"

#include "candidates/choice.h"
#include "pdf/copywriter.h"
#include "process/channels.h"
#include "request/permissions.h"
#include "system/failure.h"
#include "system/filesize.h"
#include "tasks/confinedtask.h"

namespace engine {

void copyOriginal(const Run &run)
{
    if (writeBytes(run.document, run.draft) != sizeOf(run.document))
        throw Failure(run.request.input + ": changed while it was read");
}

void copyDraft(const Run &run, int draft, std::uintmax_t size)
{
    if (writeBytes(draft, run.draft) != size)
        throw Failure("not every byte of the copy got to the disk");
}

FinishOrder finishOrder(const Run &run)
{
    const Request &request = run.request;
    FinishOrder order = {.draft = ghostscriptOutputChannel,
                         .copy = draftChannel,
                         .leastSize = leastSizeFor(sizeOf(run.document))};
    if (request.passwords.areSet())
        order.encryption = {request.passwords, revision3Permissions(request.permissions)};
    return order;
}

std::uintmax_t writeFinished(const Run &run, int draft, const FinishOrder &order)
{
    ConfinedFiles files = {.readable = {{ghostscriptOutputChannel, draft}},
                           .writable = {{draftChannel, run.draft}}};
    if (order.original >= 0)
        files.readable.emplace_back(documentChannel, run.document);
    const auto work = [order] {
        return Facts{{"size", static_cast<long long>(finishDraft(order))}};
    };
    return sizeIn(factsFrom(run, files, work), run.draft);
}

} // namespace engine
