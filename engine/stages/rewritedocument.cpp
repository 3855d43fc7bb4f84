#include "rewritedocument.h"

#include "candidates/choice.h"
#include "candidates/rewriting.h"
#include "confinedtask.h"
#include "formats/marktexts.h"
#include "ghostscript/arguments.h"
#include "ghostscriptrun.h"
#include "process/channels.h"
#include "system/filesize.h"
#include "system/wholefile.h"

namespace engine {

namespace {

RewritingOrder orderFor(const Run &run, const ChildResult &ghostscript)
{
    const Request &request = run.request;
    return {
        .document = documentChannel,
        .rewriting = ghostscriptOutputChannel,
        .copy = draftChannel,
        .smallestBilevel = request.options.smallestBilevel,
        .compressFonts = request.options.compressedFonts,
        .marked = markTexts(run.mark >= 0 ? contentOf(run.mark) : std::string()),
        .pagesWritten = pagesWritten(ghostscript),
        .warned = ghostscript.warned,
        .leastSize = leastSizeFor(sizeOf(run.document)),
    };
}

} // namespace

void rewriteDocument(const Run &run)
{
    const Descriptor output = run.newFile();
    const GhostscriptFiles files = {
        .document = run.document, .mark = run.mark, .output = output.get()};
    const auto ghostscript =
        run.children.start(ghostscriptTask(rewritingArguments(run.request), files, run));
    const ChildResult result = run.children.wait(ghostscript);
    expectSuccess(result);

    const ConfinedFiles confined = {
        .readable = {{documentChannel, run.document}, {ghostscriptOutputChannel, output.get()}},
        .writable = {{draftChannel, run.draft}},
    };
    const auto work = [order = orderFor(run, result)] {
        return Facts{{"size", static_cast<long long>(writeRewriting(order))}};
    };
    const auto writing =
        run.children.start(confinedTask(confined, sizeOf(run.document), run.settings.limits, work));
    sizeIn(answerOf(run.children.wait(writing), run.request.input), run.draft);
}

} // namespace engine
