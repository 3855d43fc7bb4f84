#include "draftstage.h"

#include "candidates/finish.h"
#include "candidates/mark.h"
#include "confinedtask.h"
#include "pdf/copywriter.h"
#include "process/channels.h"
#include "request/permissions.h"
#include "system/failure.h"
#include "system/filesize.h"
#include "system/wholefile.h"

namespace engine {

namespace {

// Of the mark's file, which has a few lines.
constexpr std::size_t mostOfMark = std::size_t(1) << 16;

std::string markText(int mark)
{
    return mark >= 0 ? contentOf(mark).substr(0, mostOfMark) : std::string();
}

Facts factsOf(const DraftReport &report)
{
    return {{"size", static_cast<long long>(report.size)},
            {"images", report.images},
            {"fonts", report.fonts},
            {"damaged", report.damaged},
            {"described", report.described},
            {"restricted", report.isRestricted}};
}

DraftReport reportOf(const Facts &facts)
{
    return {.size = std::uintmax_t(valueOf(facts, "size")),
            .images = int(valueOf(facts, "images")),
            .fonts = int(valueOf(facts, "fonts")),
            .damaged = valueOf(facts, "damaged") != 0,
            .described = valueOf(facts, "described") != 0,
            .isRestricted = valueOf(facts, "restricted") != 0};
}

Facts sizeFact(std::uintmax_t size)
{
    return {{"size", static_cast<long long>(size)}};
}

} // namespace

DraftStage::DraftStage(const Run &run, const AlbumStage &album)
    : m_run(run)
    , m_album(album)
    , m_description(changesOfMark(markText(run.mark)))
    , m_file(run.newFile())
    , m_touched(run.newFile())
{
}

DraftOrder DraftStage::orderFor(Effort effort, const std::set<int> &excluded) const
{
    const CopyOptions &options = m_run.request.options;
    return {
        .document = documentChannel,
        .album = m_album.output() >= 0 ? ghostscriptOutputChannel : -1,
        .index = indexChannel,
        .draft = draftChannel,
        .touched = touchedChannel,
        .images = imageOptionsOf(m_run.request.switches),
        .fonts = {.subset = options.subsetFonts, .compress = options.compressedFonts},
        .lossless = {.standard = {}, .compressFonts = options.compressedFonts},
        .description = m_description,
        .excluded = excluded,
        .withParts = effort == Effort::Parts,
        .withPieces = effort != Effort::Nothing,
        .leastSize = leastSizeFor(sizeOf(m_run.document)),
    };
}

void DraftStage::make(Effort effort, const std::set<int> &excluded)
{
    ConfinedFiles files = {
        .readable = {{documentChannel, m_run.document}, {indexChannel, m_album.index()}},
        .writable = {{draftChannel, m_file.get()}, {touchedChannel, m_touched.get()}},
    };
    if (m_album.output() >= 0)
        files.readable.emplace_back(ghostscriptOutputChannel, m_album.output());
    const auto work = [order = orderFor(effort, excluded)] { return factsOf(makeDraft(order)); };
    const auto number = m_run.children.start(
        confinedTask(files, sizeOf(m_run.document), m_run.settings.limits, work));
    const Facts facts = answerOf(m_run.children.wait(number), m_run.request.input);
    m_report = reportOf(facts);
    m_report.size = sizeIn(facts, m_file.get());
}

std::vector<TouchedPart> DraftStage::touched() const
{
    const auto parts = partsOf(contentOf(m_touched.get()));
    if (!parts)
        throw crashOver(m_run.request.input);
    return *parts;
}

bool DraftStage::isNeeded() const
{
    return m_run.request.passwords.areSet() || m_report.described;
}

bool DraftStage::changesMuch() const
{
    return m_run.request.passwords.areSet() || writesText(m_description);
}

Choice DraftStage::choice() const
{
    return choiceOf({.original = sizeOf(m_run.document),
                     .draft = m_report.size,
                     .asked = isNeeded(),
                     .repaired = m_report.damaged});
}

bool DraftStage::isFinished() const
{
    return !m_run.request.passwords.areSet() && !m_report.isRestricted &&
           !m_run.request.options.leaveOutStandard14;
}

void DraftStage::finish()
{
    if (!isFinished())
        writeFinished();
    else if (writeBytes(m_file.get(), m_run.draft) != m_report.size)
        throw Failure("not every byte of the copy got to the disk");
}

void DraftStage::writeFinished()
{
    const Request &request = m_run.request;
    FinishOrder order = {.draft = ghostscriptOutputChannel,
                         .original = documentChannel,
                         .copy = draftChannel,
                         .leaveOutStandard14 = request.options.leaveOutStandard14,
                         .leastSize = leastSizeFor(sizeOf(m_run.document))};
    if (request.passwords.areSet())
        order.encryption = {request.passwords, revision3Permissions(request.permissions)};
    const ConfinedFiles files = {
        .readable = {{ghostscriptOutputChannel, m_file.get()}, {documentChannel, m_run.document}},
        .writable = {{draftChannel, m_run.draft}},
    };
    const auto work = [order] { return sizeFact(finishDraft(order)); };
    const auto number = m_run.children.start(
        confinedTask(files, sizeOf(m_run.document), m_run.settings.limits, work));
    m_report.size = sizeIn(answerOf(m_run.children.wait(number), request.input), m_run.draft);
}

void DraftStage::takeOriginal()
{
    if (writeBytes(m_run.document, m_run.draft) != sizeOf(m_run.document))
        throw Failure(m_run.request.input + ": changed while it was read");
}

} // namespace engine
