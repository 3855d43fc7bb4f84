#include "albumstage.h"

#include "ghostscript/arguments.h"
#include "pdf/touched.h"
#include "process/channels.h"
#include "system/failure.h"
#include "system/wholefile.h"
#include "tasks/confinedtask.h"
#include "tasks/ghostscripttask.h"

#include <utility>

namespace engine {

namespace {

Facts factsOf(const SurveyReport &report)
{
    return {{"pages", report.pages},
            {"album", report.albumPages},
            {"damaged", report.damaged},
            {"signed", report.isSigned}};
}

SurveyReport reportOf(const Facts &facts)
{
    return {.pages = int(valueOf(facts, "pages")),
            .albumPages = int(valueOf(facts, "album")),
            .damaged = valueOf(facts, "damaged") != 0,
            .isSigned = valueOf(facts, "signed") != 0};
}

bool endedWell(const ChildResult &result)
{
    return !result.interrupted && result.violation.empty() && result.signal == 0 &&
           result.status == 0;
}

} // namespace

AlbumStage::AlbumStage(const Run &run, const ImageOptions &images)
    : m_run(run)
    , m_images(images)
    , m_album(run.newFile())
    , m_index(run.newFile())
    , m_views(run.newFile())
    , m_parts(run.newFile())
    , m_output(run.newFile())
{
}

std::string AlbumStage::survey()
{
    const ConfinedFiles files = {
        .readable = {{documentChannel, m_run.document}},
        .writable = {{draftChannel, m_album.get()},
                     {indexChannel, m_index.get()},
                     {viewsChannel, m_views.get()},
                     {touchedChannel, m_parts.get()}},
    };
    const SurveyOrder order = {
        .document = documentChannel,
        .album = draftChannel,
        .index = indexChannel,
        .views = viewsChannel,
        .parts = touchedChannel,
        .images = m_images,
    };
    const ChildResult result =
        runConfined(m_run, files, [order] { return factsOf(surveyDocument(order)); });
    std::string objection = objectionIn(result, m_run.request.input);
    if (objection.find("invalid password") != std::string::npos)
        throw Failure(m_run.request.input + ": it takes a password to open the document");
    if (!objection.empty())
        return objection;
    m_report = reportOf(answerOf(result, m_run.request.input));
    if (m_report.pages == 0)
        throw Failure(m_run.request.input + ": the document has no pages");
    return {};
}

std::vector<PageView> AlbumStage::views() const
{
    const auto views = viewsOf(contentOf(m_views.get()));
    if (!views)
        throw crashOver(m_run.request.input);
    return *views;
}

std::set<int> AlbumStage::pagesToDraw() const
{
    const auto parts = partsOf(contentOf(m_parts.get()));
    if (!parts)
        throw crashOver(m_run.request.input);
    std::set<int> pages;
    for (const TouchedPart &part : *parts)
        pages.insert(part.page);
    return pages;
}

std::size_t AlbumStage::startGhostscript(bool withAlbum)
{
    const GhostscriptFiles files = {
        .document = withAlbum ? m_album.get() : -1, .mark = m_run.mark, .output = m_output.get()};
    const auto words = albumWords(writableSwitches(m_run.request.switches));
    return m_run.children.start(
        ghostscriptTask(albumArguments(words, withAlbum, m_run.mark >= 0), files, m_run));
}

void AlbumStage::start()
{
    m_ghostscript = startGhostscript(m_report.albumPages > 0);
}

void AlbumStage::finishImages()
{
    if (m_report.albumPages > 0)
        expectAccepted();
}

void AlbumStage::expectAccepted()
{
    if (!std::exchange(m_hasEnded, true))
        finish();
}

void AlbumStage::finish()
{
    const ChildResult result = m_run.children.wait(m_ghostscript);
    m_isUsable = m_report.albumPages > 0 && endedWell(result) && !result.warned &&
                 pagesWritten(result) == m_report.albumPages;
    if (result.interrupted || result.couldNotWrite || m_report.albumPages == 0)
        expectSuccess(result);
    else if (!m_isUsable)
        expectSuccess(m_run.children.wait(startGhostscript(false)));
}

} // namespace engine
