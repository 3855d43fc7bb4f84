#include "compress.h"

#include "channels.h"
#include "child.h"
#include "draft.h"
#include "failure.h"
#include "filesize.h"
#include "finishing.h"
#include "interpreter.h"
#include "output.h"
#include "platform.h"
#include "privatefolder.h"
#include "signals.h"

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

void expect(const Ending &ending, const std::string &who)
{
    if (ending.interrupted)
        throw Failure("ended by a signal", 128 + signals::endRequest());
    if (!ending.offence.empty())
        throw Failure(who + " " + ending.offence);
    if (ending.signal != 0)
        throw Failure(who + " was ended by signal " + std::to_string(ending.signal), ending.status);
    if (ending.status != 0)
        throw Failure(who + " ended with status " + std::to_string(ending.status), ending.status);
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

void compress(const Job &job, const Settings &settings)
{
    // In this order: an output that doesn't exist yet must not become an input that does.
    const Descriptor document = openFile(job.input);
    const Descriptor mark = job.mark.empty() ? Descriptor() : openFile(job.mark);
    Output output(job.output);
    const PrivateFolder privateFolder;
    Draft draft(output, privateFolder);

    const Descriptor scratch = scratchFile(output, privateFolder);
    const Material material = {document.get(), mark.get(), scratch.get(), draft.file()};
    Work work = interpretation(job, material, settings, privateFolder.workFolder());
    work.doubt = "may be incorrect";
    work.written = [&] { return sizeOf(scratch.get()) + privateFolder.workSize(); };
    work.mostWritten = settings.limits.outputFor(sizeOf(document.get()));
    work.disks = {scratch.get(), privateFolder.descriptor()};
    const Ending ending = carryOut(work, settings.limits);
    expect(ending, "Ghostscript");
    finish(job, material, ending, settings.limits);
    if (signals::endRequest() != 0)
        throw Failure("ended by a signal", 128 + signals::endRequest());
    draft.publish(output);
}

} // namespace engine
