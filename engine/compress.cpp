#include "compress.h"

#include "files/draft.h"
#include "files/inputfile.h"
#include "files/output.h"
#include "files/privatefolder.h"
#include "process/child.h"
#include "process/signals.h"
#include "stages/keepdocument.h"
#include "stages/rewritedocument.h"
#include "system/failure.h"
#include "system/platform.h"

#include <optional>
#include <sys/stat.h>

namespace engine {

namespace {

// On the disk that takes the copy, where that knows files without a name. Ghostscript opens it once
// more, by its channel, whatever the user's umask takes away.
Descriptor scratchFile(const Output &output, const PrivateFolder &privateFolder)
{
    Descriptor file = platform::openUnnamedFile(output.folder());
    if (!file)
        file = privateFolder.openFile();
    fchmod(file.get(), S_IRUSR | S_IWUSR);
    return file;
}

void makeCopy(const Run &run)
{
    if (run.request.options.pdfa)
        rewriteDocument(run);
    else
        keepDocument(run);
}

} // namespace

void compress(const Request &request, const Settings &settings)
{
    // In this order: an output that doesn't exist yet must not become an input that does.
    const InputFile document(request.input);
    const auto mark = request.mark.empty() ? std::nullopt : std::optional<InputFile>(request.mark);
    const PrivateFolder privateFolder;
    Output output(request.output, privateFolder.record());
    Draft draft(output, privateFolder.record());
    Children children(settings.limits);
    const Run tools = {
        .request = request,
        .settings = settings,
        .folder = privateFolder,
        .children = children,
        .document = document.descriptor(),
        .mark = mark ? mark->descriptor() : -1,
        .draft = draft.file(),
        .newFile = [&] { return scratchFile(output, privateFolder); },
    };
    makeCopy(tools);
    if (signals::endRequest() != 0)
        throw Failure("ended by a signal", 128 + signals::endRequest());
    document.expectUnchanged();
    draft.publish(output);
}

} // namespace engine
