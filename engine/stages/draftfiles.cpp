#include "draftfiles.h"

#include "process/channels.h"
#include "system/wholefile.h"
#include "tasks/confinedtask.h"

namespace engine {

namespace {

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

} // namespace

DraftFiles::DraftFiles(const Run &run, const AlbumStage &album)
    : m_run(run)
    , m_album(album)
    , m_draft(run.newFile())
    , m_touched(run.newFile())
{
}

DraftOrder DraftFiles::orderWithFiles() const
{
    return {
        .document = documentChannel,
        .album = m_album.output() >= 0 ? ghostscriptOutputChannel : -1,
        .index = indexChannel,
        .draft = draftChannel,
        .touched = touchedChannel,
    };
}

ConfinedFiles DraftFiles::channels() const
{
    ConfinedFiles files = {
        .readable = {{documentChannel, m_run.document}, {indexChannel, m_album.index()}},
        .writable = {{draftChannel, m_draft.get()}, {touchedChannel, m_touched.get()}},
    };
    if (m_album.output() >= 0)
        files.readable.emplace_back(ghostscriptOutputChannel, m_album.output());
    return files;
}

DraftReport DraftFiles::make(const DraftOrder &order)
{
    const auto work = [order] { return factsOf(makeDraft(order)); };
    const Facts facts = factsFrom(m_run, channels(), work);
    sizeIn(facts, m_draft.get());
    return reportOf(facts);
}

std::vector<TouchedPart> DraftFiles::touched() const
{
    const auto parts = partsOf(contentOf(m_touched.get()));
    if (!parts)
        throw crashOver(m_run.request.input);
    return *parts;
}

} // namespace engine
