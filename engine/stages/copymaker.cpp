#include "copymaker.h"

#include "images/bilevelimages.h"
#include "images/bilevelsampling.h"
#include "lossless/recompression.h"
#include "pdf/copywriter.h"
#include "pdf/description.h"
#include "pdf/document.h"
#include "pdfa/judgement.h"
#include "pdfa/links.h"
#include "pdfa/losses.h"
#include "pdfa/rules.h"
#include "pdfa/texts.h"
#include "pdfa/viewing.h"
#include "request/permissions.h"
#include "system/filesize.h"

#include <memory>

namespace engine {

namespace {

// One whose pages can't all be found still has those that can.
void repair(Document &document)
{
    try {
        document.repair();
    } catch (const std::exception &) {
        document.pages();
    }
}

std::unique_ptr<Document> opened(int file, Trust trust)
{
    try {
        auto document = std::make_unique<Document>(file, trust);
        if (trust == Trust::Foreign)
            repair(*document);
        return document;
    } catch (const std::exception &) {
        return nullptr;
    }
}

std::optional<int> pagesOf(const std::unique_ptr<Document> &document)
{
    try {
        return document ? std::optional(document->pages()) : std::nullopt;
    } catch (const std::exception &) {
        return {};
    }
}

void restoreWhatIsDropped(QPDF &copy, QPDF &original, bool printableLinks)
{
    restoreViewing(copy, original);
    restoreOwnEntries(copy, original);
    restoreLinks(copy, original, printableLinks);
}

class CopyMaker
{
public:
    explicit CopyMaker(const CopyOrder &order);

    std::string make();

private:
    std::string makePdfa();
    std::string lossOfPdfa();
    bool losesNothing();
    void settleRewriting();
    std::uintmax_t writeRewriting();
    std::uintmax_t writeDocument();
    std::optional<std::uintmax_t> remakeDocument(bool complete);
    [[nodiscard]] WriteOptions writeOptions(bool objectStreams) const;

    const CopyOrder &m_order;
    std::unique_ptr<Document> m_document;  // null: nobody can read it
    std::unique_ptr<Document> m_rewriting; // null: damaged
    std::string m_objection;               // to the rewriting
    std::uintmax_t m_documentSize;
    bool m_settled = false; ///< the rewriting
};

CopyMaker::CopyMaker(const CopyOrder &order)
    : m_order(order)
    , m_document(opened(order.document, Trust::Foreign))
    , m_rewriting(opened(order.rewriting, Trust::Own))
    , m_documentSize(sizeOf(order.document))
{
    m_objection =
        objectionTo({order.pagesWritten, pagesOf(m_document), pagesOf(m_rewriting), order.warned});
}

std::string CopyMaker::make()
{
    if (m_rewriting)
        markProducer(m_rewriting->pdf(), m_order.marked);
    if (m_order.options.pdfa)
        return makePdfa();
    const bool complete = m_objection.empty() && losesNothing();
    const auto interpreted = complete ? std::optional(writeRewriting()) : std::nullopt;
    if (interpreted && *interpreted < m_documentSize)
        return {};
    const auto remade = remakeDocument(complete);
    if (!remade && !m_objection.empty())
        return m_objection;
    // What Ghostscript repaired is worth more than what it was, even if it takes more room.
    if (!remade || (interpreted && *interpreted <= *remade))
        writeRewriting();
    return {};
}

// Size matters less here: PDF/A brings what the document may not have, its fonts above all.
std::string CopyMaker::makePdfa()
{
    if (!m_objection.empty())
        return m_objection;
    QPDF &copy = m_rewriting->pdf();
    std::string objection = claimObjection(copy);
    if (!objection.empty())
        return objection;
    settlePdfa(copy);
    const std::string loss = lossOfPdfa();
    if (!loss.empty())
        return "it can't become PDF/A-1b: " + loss;
    restoreTexts(copy, m_order.marked, m_document ? &m_document->pdf() : nullptr);
    const std::string rule = brokenPdfaRule(copy);
    if (!rule.empty())
        return "it can't become PDF/A-1b: it would have " + rule;
    writeRewriting();
    return {};
}

// Form fields become drawings, which is what an archive keeps of them.
std::string CopyMaker::lossOfPdfa()
{
    if (!m_document)
        return {};
    QPDF &original = m_document->pdf();
    QPDF &copy = m_rewriting->pdf();
    if (needsForeignFonts(original))
        return "it does not bring its fonts along";
    if (attachmentsOf(original) > 0)
        return "it has an attachment";
    if (const std::string strange = unsupportedFeature(original); !strange.empty())
        return "it has " + strange;
    restoreWhatIsDropped(copy, original, true);
    if (!restoreToUnicode(copy, original))
        return "letters would be lost";
    if (linksOf(copy) < linksOf(original) || misleadsLinks(copy, original))
        return "links would be lost, or lead elsewhere";
    return losesText(original, copy) ? "text would be lost" : "";
}

// Of a document that breaks off on the way, what Ghostscript found is all there is to find.
bool CopyMaker::losesNothing()
{
    if (!m_document)
        return true;
    QPDF &original = m_document->pdf();
    QPDF &copy = m_rewriting->pdf();
    try {
        if (needsForeignFonts(original) || !unsupportedFeature(original).empty())
            return false;
        restoreWhatIsDropped(copy, original, false);
        return restoreToUnicode(copy, original) && !misleadsLinks(copy, original) &&
               lossOf(original, copy).empty();
    } catch (const QPDFExc &) {
        return true;
    }
}

void CopyMaker::settleRewriting()
{
    QPDF &pdf = m_rewriting->pdf();
    QPDF *original = m_document && m_document->isSound() ? &m_document->pdf() : nullptr;
    if (original && m_order.options.smoothBilevel)
        resampleBilevelImages(pdf, *original, m_order.options.smallestBilevel);
    shrinkBilevelImages(pdf, original, m_order.options.smallestBilevel);
    recompress(pdf, m_order.options.compressedFonts);
    settleDescription(pdf, m_order.options.pdfa);
    m_settled = true;
}

std::uintmax_t CopyMaker::writeRewriting()
{
    if (!m_settled)
        settleRewriting();
    return writeCopy(m_rewriting->pdf(), m_order.copy, writeOptions(false));
}

WriteOptions CopyMaker::writeOptions(bool objectStreams) const
{
    WriteOptions options = {.objectStreams = objectStreams, .encryption = {}};
    if (m_order.passwords.areSet())
        options.encryption = {m_order.passwords, revision3Permissions(m_order.permissions)};
    return options;
}

// Without object streams, which the compatibility level of the window's line doesn't allow. Only
// where the document has them already, and would grow without them, they stay.
std::uintmax_t CopyMaker::writeDocument()
{
    const std::uintmax_t size = writeCopy(m_document->pdf(), m_order.copy, writeOptions(false));
    if (size < m_documentSize || !m_document->hasObjectStreams())
        return size;
    return writeCopy(m_document->pdf(), m_order.copy, writeOptions(true));
}

// The document itself, rewritten without loss; its size. Nothing if it is damaged, unless the
// rewriting is sound and only poorer: what can be read of the document is what that lacks.
std::optional<std::uintmax_t> CopyMaker::remakeDocument(bool complete)
{
    if (!m_document || !m_rewriting)
        return {};
    const bool mayBeFlawed = m_objection.empty() && !complete;
    try {
        if (m_order.changes)
            takeDescription(m_document->pdf(), m_rewriting->pdf());
        const bool intact = recompress(m_document->pdf(), m_order.options.compressedFonts);
        const std::uintmax_t size = writeDocument();
        const bool sound = intact && m_document->isSound();
        if (!sound && !mayBeFlawed)
            return {};
        if (size > m_documentSize && sound && !m_order.changes)
            return writeBytes(m_order.document, m_order.copy);
        return size;
    } catch (const QPDFExc &) {
        return {};
    }
}

} // namespace

std::string makeCopy(const CopyOrder &order)
{
    return CopyMaker(order).make();
}

} // namespace engine
