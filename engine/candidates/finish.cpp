#include "finish.h"

#include "fonts/shrinkfonts.h"
#include "pdf/document.h"

namespace engine {

std::uintmax_t finishDraft(const FinishOrder &order)
{
    Document draft(order.draft, Trust::Own);
    Document original(order.original, Trust::Foreign);
    if (order.leaveOutStandard14)
        shrinkFonts(draft.pdf(), {.subset = false, .compress = true, .leaveOutStandard14 = true},
                    {});
    WriteOptions options;
    options.objectStreams = true;
    options.encryption = order.encryption;
    options.restrictionsOf = &original.pdf();
    options.leastSize = order.leastSize;
    return writeCopy(draft.pdf(), order.copy, options);
}

} // namespace engine
