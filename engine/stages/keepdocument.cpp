#include "keepdocument.h"

#include "albumstage.h"
#include "draftstage.h"
#include "finishedcopy.h"
#include "proofsettings.h"
#include "rewritedocument.h"
#include "say.h"
#include "system/failure.h"

namespace engine {

namespace {

// Parts that fail are taken back one by one so often; then all are.
constexpr int mostTries = 2;

class Keeper
{
public:
    explicit Keeper(const Run &run)
        : m_run(run)
        , m_album(run, imageOptionsOf(run.request.switches))
        , m_draft(run, m_album)
        , m_proof(run.children, proofSettings(run), run.document, run.newFile)
    {
    }

    void keep()
    {
        const std::string objection = m_album.survey();
        if (!objection.empty())
            return rewriteUnopened(m_run, objection);
        m_album.start();
        makeCopy();
    }

private:
    void makeCopy()
    {
        // Any change breaks a signature.
        if (m_album.report().isSigned && !m_draft.changesMuch()) {
            m_album.expectAccepted();
            takeOriginal("it is signed");
            return;
        }
        m_proof.begin(m_album.views(), m_album.pagesToDraw());
        m_album.finishImages();
        const bool isProven = proveDraft();
        m_album.expectAccepted();
        if (!isProven)
            return takeUnproven();
        if (m_draft.choice() == Choice::Draft)
            m_draft.finish();
        if (m_draft.choice() == Choice::Original)
            takeOriginal("nothing makes it smaller");
        else
            sayWhatWasDone();
    }

    // From all that can be done down to nothing; false if nothing stands the proof.
    bool proveDraft()
    {
        for (int tries = 0; tries < mostTries; ++tries) {
            if (holds(Effort::Parts))
                return true;
            if (m_isUnexplained || m_failed.empty())
                break;
        }
        return m_isReadable && (holds(Effort::Pieces) || holds(Effort::Nothing));
    }

    bool holds(Effort effort)
    {
        m_draft.make(effort, m_failed);
        // The original needs no proof, unless it is damaged: then somebody has to be able to read
        // it.
        if (m_draft.choice() == Choice::Original && !m_draft.report().damaged)
            return true;
        const ProofResult result = m_proof.compare(m_draft.file(), m_draft.touched());
        m_isReadable = result.readable;
        m_isUnexplained =
            result.findings.unexplained || result.findings.failed.count(everything) > 0;
        m_failed.insert(result.findings.failed.begin(), result.findings.failed.end());
        return result.isSound();
    }

    void takeUnproven()
    {
        // Of a damaged document, each reader makes something else.
        if (m_album.report().damaged || m_draft.report().damaged)
            throw Failure(m_run.request.input + ": the document is damaged");
        if (m_isReadable && m_draft.isNeeded())
            throw Failure(m_run.request.input + ": a copy would not show what the document shows");
        if (!m_draft.isNeeded())
            return takeOriginal(m_isReadable ? "no smaller copy shows the same"
                                             : "the reader that has to prove a copy can't read it");
        m_draft.make(Effort::Nothing, {});
        m_draft.finish();
        say("nothing was made smaller: the reader that has to prove it can't read the document");
    }

    void takeOriginal(const std::string &reason)
    {
        copyOriginal(m_run);
        say("the copy is the original: " + reason);
    }

    void sayWhatWasDone()
    {
        const DraftReport &report = m_draft.report();
        std::string line = "made smaller: " + std::to_string(report.images) + " images, " +
                           std::to_string(report.fonts) + " fonts";
        if (!m_failed.empty())
            line += "; taken back: " + std::to_string(m_failed.size());
        if (report.damaged)
            line += "; repaired";
        say(line);
    }

    const Run &m_run;
    AlbumStage m_album;
    DraftStage m_draft;
    Proof m_proof;
    std::set<int> m_failed;
    bool m_isReadable = true;
    bool m_isUnexplained = false;
};

} // namespace

void keepDocument(const Run &run)
{
    Keeper(run).keep();
}

} // namespace engine
