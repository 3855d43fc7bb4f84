#include "rewriting.h"

#include "images/bilevelimages.h"
#include "lossless/pieces.h"
#include "mark.h"
#include "pdf/copywriter.h"
#include "pdf/description.h"
#include "pdf/document.h"
#include "pdf/pageboxes.h"
#include "pdfa/judgement.h"
#include "pdfa/links.h"
#include "pdfa/losses.h"
#include "pdfa/outline.h"
#include "pdfa/rules.h"
#include "pdfa/texts.h"
#include "pdfa/viewing.h"
#include "system/wholefile.h"

#include <memory>
#include <stdexcept>

namespace engine {

namespace {

void object(const std::string &reason)
{
    if (!reason.empty())
        throw std::runtime_error(reason);
}

void objectToPdfa(const std::string &reason)
{
    if (!reason.empty())
        object("it can't become PDF/A-1b: " + reason);
}

std::unique_ptr<Document> opened(int file, Trust trust)
{
    try {
        auto document = std::make_unique<Document>(file, trust);
        if (trust == Trust::Foreign)
            document->repair();
        return document;
    } catch (const std::exception &) {
        return nullptr;
    }
}

std::optional<int> pagesOf(const std::unique_ptr<Document> &document)
{
    return document ? std::optional(document->pages()) : std::nullopt;
}

// What can be known before anything is repaired.
void judgeOriginal(QPDF &original)
{
    if (needsForeignFonts(original))
        objectToPdfa("it does not bring its fonts along");
    if (attachmentsOf(original) > 0)
        objectToPdfa("it has an attachment");
    if (const std::string feature = unsupportedFeature(original); !feature.empty())
        objectToPdfa("it has " + feature);
}

// Printable links are what PDF/A wants. Letters that can't be repaired are lost.
void repair(QPDF &copy, QPDF &original)
{
    restoreViewing(copy, original);
    restoreOwnEntries(copy, original);
    restoreLinks(copy, original, true);
    restoreOutline(copy, original);
    if (!restoreToUnicode(copy, original))
        objectToPdfa("letters would be lost");
}

void judgeCopy(QPDF &copy, QPDF &original)
{
    if (const std::string loss = lossOf(copy, original); !loss.empty())
        objectToPdfa(loss + " would be lost");
    if (misleadsLinks(copy, original))
        objectToPdfa("links would lead elsewhere");
    if (losesText(copy, original))
        objectToPdfa("text would be lost");
}

// Form fields become drawings, which is what an archive keeps of them.
void makePdfa(QPDF &copy, QPDF *original, const RewritingOrder &order)
{
    object(claimObjection(copy));
    if (original)
        judgeOriginal(*original);
    settlePdfa(copy);
    if (original) {
        repair(copy, *original);
        judgeCopy(copy, *original);
    }
    restoreTexts(copy, order.marked, original);
    if (const std::string rule = brokenPdfaRule(copy); !rule.empty())
        objectToPdfa("it would have " + rule);
}

// Nobody can parse the document; these words are in the clear in all that have what they stand for.
void findWords(const std::string &content, RewritingReport &report)
{
    report.maybeSigned = content.find("/ByteRange") != std::string::npos;
    report.maybeLocked = content.find("/Encrypt") != std::string::npos;
}

std::optional<std::string> standardOf(const RewritingOrder &order)
{
    return order.pdfa ? std::optional<std::string>("PDF/A-1") : std::nullopt;
}

} // namespace

RewritingReport writeRewriting(const RewritingOrder &order)
{
    const auto document = opened(order.document, Trust::Foreign);
    const auto rewriting = opened(order.rewriting, Trust::Own);
    object(objectionTo({order.pagesWritten, pagesOf(document), pagesOf(rewriting), order.warned}));
    QPDF &copy = rewriting->pdf();
    QPDF *original = document ? &document->pdf() : nullptr;
    RewritingReport report;
    if (original)
        report.hasOwnFonts = !leavesFontsToReaders(*original);
    else
        findWords(contentOf(order.document), report);
    markProducer(copy, order.marked);
    if (order.pdfa)
        makePdfa(copy, original, order);
    if (order.smallestBilevel)
        recodeBilevelImages(copy);
    applyPieces(copy, {.standard = standardOf(order), .compressFonts = order.compressFonts});
    if (order.pdfa)
        settleDescription(copy, true);
    else
        report.described = applyChanges(copy, order.description);
    setContent(order.views, linesOf(pageViewsOf(copy)));
    WriteOptions options;
    options.leastSize = order.leastSize;
    report.size = writeCopy(copy, order.copy, options);
    return report;
}

} // namespace engine
