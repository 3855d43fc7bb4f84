#include "finish.h"

#include "fonts/shrinkfonts.h"
#include "pdf/document.h"
#include "pdf/streams.h"
#include "xmp/xmpedit.h"

#include <memory>

namespace engine {

namespace {

// PDF/A allows no passwords.
void dropPdfaClaim(QPDF &document)
{
    QPDFObjectHandle metadata = document.getRoot().getKey("/Metadata");
    const auto packet = metadata.isStream() ? decodedBytesOf(metadata) : std::nullopt;
    if (!packet || packet->find("pdfaid") == std::string::npos)
        return;
    if (const auto without = withoutPdfaClaim(*packet))
        metadata.replaceStreamData(*without, QPDFObjectHandle::newNull(),
                                   QPDFObjectHandle::newNull());
}

} // namespace

std::uintmax_t finishDraft(const FinishOrder &order)
{
    Document draft(order.draft, Trust::Own);
    std::unique_ptr<Document> original;
    if (order.original >= 0)
        original = std::make_unique<Document>(order.original, Trust::Foreign);
    if (order.encryption)
        dropPdfaClaim(draft.pdf());
    if (order.leaveOutStandard14)
        shrinkFonts(draft.pdf(), {.subset = false, .compress = true, .leaveOutStandard14 = true},
                    {});
    WriteOptions options;
    options.objectStreams = true;
    options.encryption = order.encryption;
    options.restrictionsOf = original ? &original->pdf() : nullptr;
    options.leastSize = order.leastSize;
    return writeCopy(draft.pdf(), order.copy, options);
}

} // namespace engine
