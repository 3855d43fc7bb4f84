#include "copymaker.h"

#include "../filesize.h"
#include "bilevelimages.h"
#include "bilevelsampling.h"
#include "copywriter.h"
#include "description.h"
#include "document.h"
#include "judgement.h"
#include "links.h"
#include "losses.h"
#include "pdfa.h"
#include "recompression.h"
#include "texts.h"
#include "viewing.h"

#include <memory>

namespace engine {

namespace {

std::unique_ptr<Document> opened(int file, const std::string &password, Trust trust)
{
    try {
        return std::make_unique<Document>(file, password, trust);
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
    void settleInterpretation();
    std::uintmax_t writeInterpretation();
    std::uintmax_t writeDocument();
    std::optional<std::uintmax_t> remakeDocument(bool complete);
    [[nodiscard]] Form form(bool objectStreams) const;

    const CopyOrder &m_order;
    std::unique_ptr<Document> m_document;       // null: nobody can read it
    std::unique_ptr<Document> m_interpretation; // null: damaged
    std::string m_objection;                    // to the interpretation
    std::uintmax_t m_documentSize;
    bool m_settled = false; ///< the interpretation
};

CopyMaker::CopyMaker(const CopyOrder &order)
    : m_order(order)
    , m_document(opened(order.document, {}, Trust::Foreign))
    , m_interpretation(opened(order.interpretation, order.password, Trust::Own))
    , m_documentSize(sizeOf(order.document))
{
    m_objection = objectionTo(
        {order.pagesWritten, pagesOf(m_document), pagesOf(m_interpretation), order.doubted});
}

std::string CopyMaker::make()
{
    if (m_interpretation)
        markProducer(m_interpretation->pdf(), m_order.marked);
    if (m_order.wishes.pdfa)
        return makePdfa();
    const bool complete = m_objection.empty() && losesNothing();
    const auto interpreted = complete ? std::optional(writeInterpretation()) : std::nullopt;
    if (interpreted && *interpreted < m_documentSize)
        return {};
    const auto remade = remakeDocument(complete);
    if (!remade && !m_objection.empty())
        return m_objection;
    // What Ghostscript repaired is worth more than what it was, even if it takes more room.
    if (!remade || (interpreted && *interpreted <= *remade))
        writeInterpretation();
    return {};
}

// Size matters less here: PDF/A brings what the document may not have, its fonts above all.
std::string CopyMaker::makePdfa()
{
    if (!m_objection.empty())
        return m_objection;
    QPDF &copy = m_interpretation->pdf();
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
    writeInterpretation();
    return {};
}

// Form fields become drawings, which is what an archive keeps of them.
std::string CopyMaker::lossOfPdfa()
{
    if (!m_document)
        return {};
    QPDF &original = m_document->pdf();
    QPDF &copy = m_interpretation->pdf();
    if (needsForeignFonts(original))
        return "it does not bring its fonts along";
    if (attachmentsOf(original) > 0)
        return "it has an attachment";
    if (const std::string strange = strangeness(original); !strange.empty())
        return "it has " + strange;
    restoreWhatIsDropped(copy, original, true);
    if (!restoreLetters(copy, original))
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
    QPDF &copy = m_interpretation->pdf();
    try {
        if (needsForeignFonts(original) || !strangeness(original).empty())
            return false;
        restoreWhatIsDropped(copy, original, false);
        return restoreLetters(copy, original) && !misleadsLinks(copy, original) &&
               lossOf(original, copy).empty();
    } catch (const QPDFExc &) {
        return true;
    }
}

void CopyMaker::settleInterpretation()
{
    QPDF &pdf = m_interpretation->pdf();
    QPDF *original = m_document && m_document->isSound() ? &m_document->pdf() : nullptr;
    if (original && m_order.wishes.smoothBilevel)
        resampleBilevelImages(pdf, *original, m_order.wishes.smallestBilevel);
    shrinkBilevelImages(pdf, original, m_order.wishes.smallestBilevel);
    recompress(pdf, m_order.wishes.compressedFonts);
    settleDescription(pdf, m_order.wishes.pdfa);
    m_settled = true;
}

std::uintmax_t CopyMaker::writeInterpretation()
{
    if (!m_settled)
        settleInterpretation();
    return writeCopy(m_interpretation->pdf(), m_order.copy, form(false));
}

Form CopyMaker::form(bool objectStreams) const
{
    QPDF *locked = m_order.password.empty() ? nullptr : &m_interpretation->pdf();
    return {objectStreams, locked, m_order.passwords};
}

// Without object streams, which the compatibility level of the window's line doesn't allow. Only
// where the document has them already, and would grow without them, they stay.
std::uintmax_t CopyMaker::writeDocument()
{
    const std::uintmax_t size = writeCopy(m_document->pdf(), m_order.copy, form(false));
    if (size < m_documentSize || !m_document->hasObjectStreams())
        return size;
    return writeCopy(m_document->pdf(), m_order.copy, form(true));
}

// The document itself, rewritten without loss; its size. Nothing if it is damaged, unless the
// interpretation is sound and only poorer: what can be read of the document is what that lacks.
std::optional<std::uintmax_t> CopyMaker::remakeDocument(bool complete)
{
    if (!m_document || !m_interpretation)
        return {};
    const bool mayBeFlawed = m_objection.empty() && !complete;
    try {
        if (m_order.wishes.changes)
            takeDescription(m_document->pdf(), m_interpretation->pdf());
        const bool intact = recompress(m_document->pdf(), m_order.wishes.compressedFonts);
        const std::uintmax_t size = writeDocument();
        const bool sound = intact && m_document->isSound();
        if (!sound && !mayBeFlawed)
            return {};
        if (size > m_documentSize && sound && !m_order.wishes.changes)
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
