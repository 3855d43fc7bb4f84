#include "rewritedocument.h"

#include "finishedcopy.h"
#include "prepareddocument.h"
#include "proofsettings.h"
#include "rewritingstage.h"
#include "say.h"
#include "system/failure.h"
#include "system/filesize.h"

#include <set>

namespace engine {

namespace {

std::set<int> allOf(const std::vector<PageView> &views)
{
    std::set<int> pages;
    for (const PageView &view : views)
        pages.insert(view.page);
    return pages;
}

void rewriteOpened(const Run &run, AlbumStage &album)
{
    Proof proof(run.children, proofSettings(run), run.document, run.newFile);
    const std::vector<PageView> views = album.views();
    proof.begin(views, allOf(views));
    const Descriptor prepared = preparedDocument(run, album, proof);
    RewritingStage rewriting(run);
    rewriting.make(rewriting.rewrite(prepared.get(), rewritingWords(run.request.switches)));
    if (areThere(run.settings.readers))
        rewriting.prove(proof, views);
    rewriting.finish();
    if (!areThere(run.settings.readers))
        say("the copy is unproven: the reader that has to prove it isn't there");
}

// Ghostscript takes what is no document for a program, so it gets none.
bool readerOpens(const Run &run)
{
    if (!areThere(run.settings.readers))
        return false;
    const Descriptor text = run.newFile();
    const ChildResult result = run.children.wait(run.children.start(
        textTask(run.settings.readers, run.document, text.get(), run.settings.readerLimits)));
    if (result.interrupted)
        expectSuccess(result);
    return result.status == 0 && result.violation.empty() && sizeOf(text.get()) > 0;
}

// Rather than of the disk or of a signal, it is the document's fault.
bool isDocumentsFault(const ChildResult &ghostscript)
{
    return ghostscript.status != 0 && !ghostscript.interrupted && ghostscript.violation.empty() &&
           !ghostscript.couldNotWrite;
}

} // namespace

void rewriteDocument(const Run &run)
{
    AlbumStage album(run, bilevelAlone(imageOptionsOf(run.request.switches)));
    const std::string objection = album.survey();
    if (objection.empty())
        rewriteOpened(run, album);
    else
        rewriteUnopened(run, objection);
}

void rewriteUnopened(const Run &run, const std::string &objection)
{
    const Failure unreadable(run.request.input + ": " + objection);
    if (!readerOpens(run))
        throw unreadable;
    RewritingStage rewriting(run);
    const ChildResult ghostscript = rewriting.rewrite(run.document, run.request.switches);
    if (isDocumentsFault(ghostscript))
        throw unreadable;
    rewriting.make(ghostscript);
    const Request &request = run.request;
    if (rewriting.report().maybeLocked && !request.options.pdfa && !request.passwords.areSet())
        throw unreadable;
    Proof proof(run.children, proofSettings(run), run.document, run.newFile);
    const std::vector<PageView> views = rewriting.views();
    proof.begin(views, allOf(views));
    rewriting.prove(proof, views);
    const bool isSigned = rewriting.report().maybeSigned && !request.options.pdfa;
    if (isSigned && !rewriting.changesMuch()) {
        copyOriginal(run);
        say("the copy is the original: it is signed");
    } else if (rewriting.choice() == Choice::Original) {
        copyOriginal(run);
        say("the copy is the original: nothing makes it smaller");
    } else {
        rewriting.finish();
        say("written anew: the document is damaged");
    }
}

} // namespace engine
