#include "rewritingstage.h"

#include "candidates/mark.h"
#include "finishedcopy.h"
#include "formats/marktexts.h"
#include "ghostscript/arguments.h"
#include "process/channels.h"
#include "system/failure.h"
#include "system/filesize.h"
#include "system/wholefile.h"
#include "tasks/confinedtask.h"
#include "tasks/ghostscripttask.h"

namespace engine {

namespace {

Facts factsOf(const RewritingReport &report)
{
    return {{"size", static_cast<long long>(report.size)},
            {"described", report.described},
            {"fonts", report.hasOwnFonts},
            {"signed", report.maybeSigned},
            {"locked", report.maybeLocked}};
}

RewritingReport reportOf(const Facts &facts)
{
    return {.size = std::uintmax_t(valueOf(facts, "size")),
            .described = valueOf(facts, "described") != 0,
            .hasOwnFonts = valueOf(facts, "fonts") != 0,
            .maybeSigned = valueOf(facts, "signed") != 0,
            .maybeLocked = valueOf(facts, "locked") != 0};
}

// Every page as a whole, under its own number from 1.
std::vector<TouchedPart> pagesAsParts(const std::vector<PageView> &views)
{
    std::vector<TouchedPart> parts;
    parts.reserve(views.size());
    for (const PageView &view : views)
        parts.push_back(wholePage(PartKind::Image, view.page + 1, view));
    return parts;
}

std::string objectionTo(const ProofResult &result)
{
    if (!result.readable)
        return "the reader that has to prove a copy can't read it";
    if (!result.findings.failed.empty())
        return "page " + std::to_string(*result.findings.failed.begin()) +
               " would not show or say the same";
    return result.findings.unexplained ? "the copy would have other pages" : std::string();
}

} // namespace

RewritingStage::RewritingStage(const Run &run)
    : m_run(run)
    , m_output(run.newFile())
    , m_file(run.newFile())
    , m_views(run.newFile())
{
}

ChildResult RewritingStage::rewrite(int document, const std::vector<std::string> &words) const
{
    Request request = m_run.request;
    request.switches = words;
    const GhostscriptFiles files = {
        .document = document, .mark = m_run.mark, .output = m_output.get()};
    return m_run.children.wait(
        m_run.children.start(ghostscriptTask(rewritingArguments(request), files, m_run)));
}

RewritingOrder RewritingStage::orderFor(const ChildResult &ghostscript) const
{
    const CopyOptions &options = m_run.request.options;
    const std::string mark = markText(m_run);
    return {
        .document = documentChannel,
        .rewriting = ghostscriptOutputChannel,
        .copy = draftChannel,
        .views = viewsChannel,
        .pdfa = options.pdfa,
        .smallestBilevel = options.smallestBilevel,
        .compressFonts = options.compressedFonts,
        .marked = markTexts(mark),
        .description = changesOfMark(mark),
        .pagesWritten = pagesWritten(ghostscript),
        .warned = ghostscript.warned,
        .leastSize = leastSizeFor(sizeOf(m_run.document)),
    };
}

void RewritingStage::make(const ChildResult &ghostscript)
{
    expectSuccess(ghostscript);
    const ConfinedFiles files = {
        .readable = {{documentChannel, m_run.document}, {ghostscriptOutputChannel, m_output.get()}},
        .writable = {{draftChannel, m_file.get()}, {viewsChannel, m_views.get()}},
    };
    const auto work = [order = orderFor(ghostscript)] { return factsOf(writeRewriting(order)); };
    const Facts facts = factsFrom(m_run, files, work);
    sizeIn(facts, m_file.get());
    m_report = reportOf(facts);
}

std::vector<PageView> RewritingStage::views() const
{
    const auto views = viewsOf(contentOf(m_views.get()));
    if (!views)
        throw crashOver(m_run.request.input);
    return *views;
}

void RewritingStage::prove(Proof &proof, const std::vector<PageView> &views) const
{
    const Likeness likeness =
        m_report.hasOwnFonts ? Likeness::Rewritten : Likeness::RewrittenOtherFonts;
    const std::string objection =
        objectionTo(proof.compare(m_file.get(), pagesAsParts(views), likeness));
    if (objection.empty())
        return;
    const std::string aim =
        m_run.request.options.pdfa ? "it can't become PDF/A-1b: " : "it can't be repaired: ";
    throw Failure(m_run.request.input + ": " + aim + objection);
}

bool RewritingStage::changesMuch() const
{
    return m_run.request.passwords.areSet() || writesText(changesOfMark(markText(m_run)));
}

Choice RewritingStage::choice() const
{
    const Request &request = m_run.request;
    return choiceOf(
        {.original = sizeOf(m_run.document),
         .draft = m_report.size,
         .asked = request.options.pdfa || request.passwords.areSet() || m_report.described});
}

void RewritingStage::finish() const
{
    if (m_run.request.passwords.areSet())
        writeFinished(m_run, m_file.get(), finishOrder(m_run));
    else
        copyDraft(m_run, m_file.get(), m_report.size);
}

} // namespace engine
