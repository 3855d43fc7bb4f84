#include "prepareddocument.h"

#include "draftfiles.h"

#include <set>

namespace engine {

namespace {

// Images that fail are taken back one by one so often; then all are.
constexpr int mostTries = 2;

// Returns the number of images that were made smaller.
int prepare(const Run &run, DraftFiles &files, bool withImages, const std::set<int> &excluded)
{
    DraftOrder order = files.orderWithFiles();
    order.images = bilevelAlone(imageOptionsOf(run.request.switches));
    order.excluded = excluded;
    order.withParts = withImages;
    order.withPieces = false;
    return files.make(order).images;
}

// What can't be compared has no findings: the copy itself is still to be proven.
bool hasSoundImages(const Run &run, DraftFiles &files, Proof &proof)
{
    std::set<int> failed;
    for (int tries = 0; tries < mostTries; ++tries) {
        if (prepare(run, files, true, failed) == 0)
            return true;
        const Findings findings = proof.compare(files.draft(), files.touched()).findings;
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
    DraftFiles files(run, album);
    if (!hasSoundImages(run, files, proof))
        prepare(run, files, false, {});
    return files.takeDraft();
}

} // namespace engine
