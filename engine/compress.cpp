#include "compress.h"

#include "files/draft.h"
#include "files/output.h"
#include "files/privatefolder.h"
#include "ghostscript/messages.h"
#include "process/channels.h"
#include "process/child.h"
#include "process/signals.h"
#include "stages/copy.h"
#include "stages/rewriting.h"
#include "system/failure.h"
#include "system/filesize.h"
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

} // namespace

void compress(const Request &request, const Settings &settings)
{
    // In this order: an output that doesn't exist yet must not become an input that does.
    const Descriptor document = openFile(request.input);
    const Descriptor mark = request.mark.empty() ? Descriptor() : openFile(request.mark);
    Output output(request.output);
    const PrivateFolder privateFolder;
    Draft draft(output, privateFolder);

    const Descriptor scratch = scratchFile(output, privateFolder);
    const RunFiles files = {document.get(), mark.get(), scratch.get(), draft.file()};
    ChildTask task = rewritingTask(request, files, settings, privateFolder.workFolder());
    task.warning = ghostscriptWarning;
    task.writeError = ghostscriptWriteError;
    task.written = [&] { return sizeOf(scratch.get()) + privateFolder.workSize(); };
    task.mostWritten = settings.limits.outputFor(sizeOf(document.get()));
    task.disks = {scratch.get(), privateFolder.descriptor()};
    const ChildResult result = run(std::move(task), settings.limits);
    expectSuccess(result);
    finish(request, files, result, settings.limits);
    if (signals::endRequest() != 0)
        throw Failure("ended by a signal", 128 + signals::endRequest());
    draft.publish(output);
}

} // namespace engine
