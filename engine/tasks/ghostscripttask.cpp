#include "ghostscripttask.h"

#include "ghostscript/messages.h"
#include "process/channels.h"
#include "program.h"
#include "system/filesize.h"

#include <charconv>
#include <cstdlib>
#include <memory>
#include <sys/stat.h>

namespace engine {

namespace {

AccessPolicy policyOf(const std::string &ghostscript, const std::string &workFolder,
                      const GhostscriptFiles &files)
{
    AccessPolicy policy;
    allowProgram(policy, ghostscript);
    if (files.document >= 0)
        policy.readableDescriptors.push_back(documentChannel);
    if (files.mark >= 0)
        policy.readableDescriptors.push_back(markChannel);
    policy.writableDescriptors = {draftChannel};
    policy.writableFolders = {workFolder};
    return policy;
}

// GS_OPTIONS and GS_DEVICE would add switches to those that the window sends. The temporary files
// are the engine's own, whatever the user's umask takes away.
void setEnvironment(const std::string &workFolder)
{
    unsetenv("GS_OPTIONS");
    unsetenv("GS_DEVICE");
    setenv("TMPDIR", workFolder.c_str(), 1);
    umask(S_IRWXG | S_IRWXO);
}

std::vector<std::pair<int, int>> channelsOf(const GhostscriptFiles &files, int program)
{
    std::vector<std::pair<int, int>> channels = {{draftChannel, files.output},
                                                 {programChannel, program}};
    if (files.document >= 0)
        channels.emplace_back(documentChannel, files.document);
    if (files.mark >= 0)
        channels.emplace_back(markChannel, files.mark);
    return channels;
}

} // namespace

ChildTask ghostscriptTask(const std::vector<std::string> &arguments, const GhostscriptFiles &files,
                          const Run &run)
{
    const Settings &settings = run.settings;
    const PrivateFolder &folder = run.folder;
    const auto program =
        std::make_shared<Descriptor>(openProgram("Ghostscript", settings.ghostscript));
    ChildTask task;
    task.name = "Ghostscript";
    task.channels = channelsOf(files, program->get());
    task.body = [program, arguments, files, settings, workFolder = folder.workFolder()] {
        setEnvironment(workFolder);
        return becomeProgram(policyOf(settings.ghostscript, workFolder, files),
                             settings.ghostscript, arguments, settings.limits.memory);
    };
    task.warning = ghostscriptWarning;
    task.writeError = ghostscriptWriteError;
    task.written = [files, &folder] { return sizeOf(files.output) + folder.workSize(); };
    task.mostWritten = settings.limits.outputFor(sizeOf(run.document));
    task.disks = {files.output, folder.descriptor()};
    return task;
}

std::optional<int> pagesWritten(const ChildResult &ghostscript)
{
    int number = 0;
    const std::string &text = ghostscript.report;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc() && rest == text.data() + text.size();
    return whole ? std::optional(number) : std::nullopt;
}

} // namespace engine
