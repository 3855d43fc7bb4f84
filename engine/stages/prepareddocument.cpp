#include "prepareddocument.h"

#include "confinedtask.h"
#include "process/channels.h"
#include "system/failure.h"
#include "system/filesize.h"
#include "system/wholefile.h"

#include <set>

namespace engine {

namespace {

// Images that fail are taken back one by one so often; then all are.
constexpr int mostTries = 2;

class Preparation
{
public:
    Preparation(const Run &run, const AlbumStage &album)
        : m_run(run)
        , m_album(album)
        , m_file(run.newFile())
        , m_touched(run.newFile())
    {
    }

    // Returns the number of images that were made smaller.
    int make(bool withImages, const std::set<int> &excluded)
    {
        ConfinedFiles files = {
            .readable = {{documentChannel, m_run.document}, {indexChannel, m_album.index()}},
            .writable = {{draftChannel, m_file.get()}, {touchedChannel, m_touched.get()}},
        };
        if (m_album.output() >= 0)
            files.readable.emplace_back(ghostscriptOutputChannel, m_album.output());
        const auto work = [order = orderFor(withImages, excluded)] {
            const DraftReport report = makeDraft(order);
            return Facts{{"size", static_cast<long long>(report.size)}, {"images", report.images}};
        };
        const auto number = m_run.children.start(
            confinedTask(files, sizeOf(m_run.document), m_run.settings.limits, work));
        const Facts facts = answerOf(m_run.children.wait(number), m_run.request.input);
        sizeIn(facts, m_file.get());
        return int(valueOf(facts, "images"));
    }

    [[nodiscard]] Findings findings(Proof &proof) const
    {
        const auto parts = partsOf(contentOf(m_touched.get()));
        if (!parts)
            throw crashOver(m_run.request.input);
        return proof.compare(m_file.get(), *parts).findings;
    }

    Descriptor take() { return std::move(m_file); }

private:
    [[nodiscard]] DraftOrder orderFor(bool withImages, const std::set<int> &excluded) const
    {
        return {
            .document = documentChannel,
            .album = m_album.output() >= 0 ? ghostscriptOutputChannel : -1,
            .index = indexChannel,
            .draft = draftChannel,
            .touched = touchedChannel,
            .images = bilevelAlone(imageOptionsOf(m_run.request.switches)),
            .excluded = excluded,
            .withParts = withImages,
            .withPieces = false,
        };
    }

    const Run &m_run;
    const AlbumStage &m_album;
    Descriptor m_file;
    Descriptor m_touched;
};

// What can't be compared has no findings: the copy itself is still to be proven.
bool hasSoundImages(Preparation &preparation, Proof &proof)
{
    std::set<int> failed;
    for (int tries = 0; tries < mostTries; ++tries) {
        if (preparation.make(true, failed) == 0)
            return true;
        const Findings findings = preparation.findings(proof);
        if (findings.isNone())
            return true;
        failed.insert(findings.failed.begin(), findings.failed.end());
    }
    return false;
}

} // namespace

Descriptor preparedDocument(const Run &run, AlbumStage &album, Proof &proof)
{
    if (album.report().albumPages > 0) {
        album.start();
        album.finishImages();
    }
    Preparation preparation(run, album);
    if (!hasSoundImages(preparation, proof))
        preparation.make(false, {});
    return preparation.take();
}

} // namespace engine
