#include "compress.h"

#include "channels.h"
#include "child.h"
#include "draft.h"
#include "failure.h"
#include "inspection.h"
#include "interpreter.h"
#include "judgement.h"
#include "output.h"
#include "privatefolder.h"
#include "signals.h"

#include <charconv>
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

std::uintmax_t sizeOf(const Descriptor &file)
{
    struct stat entry = {};
    return fstat(file.get(), &entry) == 0 ? std::uintmax_t(entry.st_size) : 0;
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

std::optional<int> numberIn(const std::string &text)
{
    int number = 0;
    const auto end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
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

    const Material material = {document.get(), mark.get(), draft.file()};
    Work work = interpretation(job, material, settings, privateFolder.workFolder());
    work.written = [&] { return draft.size() + privateFolder.workSize(); };
    work.mostWritten = settings.limits.outputFor(sizeOf(document));
    work.folders = {output.folderPath(), privateFolder.workFolder()};
    const Ending ending = carryOut(work, settings.limits);
    expect(ending, "Ghostscript");

    Evidence evidence = inspect(material, job.password, settings.limits);
    evidence.pagesWritten = numberIn(ending.report);
    if (const std::string objection = objectionTo(evidence); !objection.empty())
        throw Failure(job.input + ": " + objection);
    if (signals::endRequest() != 0)
        throw Failure("ended by a signal", 128 + signals::endRequest());
    draft.publish(output);
}

} // namespace engine
