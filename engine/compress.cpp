#include "compress.h"

#include "files/draft.h"
#include "files/output.h"
#include "files/privatefolder.h"
#include "process/child.h"
#include "process/signals.h"
#include "stages/keepdocument.h"
#include "stages/rewritedocument.h"
#include "system/failure.h"
#include "system/platform.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace engine {

namespace {

// Not waiting: a pipe that nobody fills is no document.
Descriptor openFile(const std::string &path)
{
    Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat entry = {};
    if (!file || fstat(file.get(), &entry) != 0)
        throw Failure::ofSystem(path);
    if (!S_ISREG(entry.st_mode))
        throw Failure(path + ": not a file");
    return file;
}

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

// A document that libqpdf can't open may still be one that Ghostscript makes out.
void makeCopy(const Run &run)
{
    if (run.request.options.pdfa || !keepDocument(run))
        rewriteDocument(run);
}

} // namespace

void compress(const Request &request, const Settings &settings)
{
    // In this order: an output that doesn't exist yet must not become an input that does.
    const Descriptor document = openFile(request.input);
    const Descriptor mark = request.mark.empty() ? Descriptor() : openFile(request.mark);
    Output output(request.output);
    const PrivateFolder privateFolder;
    Draft draft(output, privateFolder);
    Children children(settings.limits);
    const Run run = {
        .request = request,
        .settings = settings,
        .folder = privateFolder,
        .children = children,
        .document = document.get(),
        .mark = mark.get(),
        .draft = draft.file(),
        .newFile = [&] { return scratchFile(output, privateFolder); },
    };
    makeCopy(run);
    if (signals::endRequest() != 0)
        throw Failure("ended by a signal", 128 + signals::endRequest());
    draft.publish(output);
}

} // namespace engine
