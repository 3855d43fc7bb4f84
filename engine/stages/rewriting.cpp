#include "rewriting.h"

#include "ghostscript/arguments.h"
#include "process/channels.h"
#include "program.h"

#include <cstdlib>
#include <memory>
#include <sys/stat.h>

namespace engine {

namespace {

AccessPolicy policyOf(const std::string &ghostscript, const std::string &workFolder, bool hasMark)
{
    AccessPolicy policy;
    allowProgram(policy, ghostscript);
    policy.readableDescriptors = {documentChannel};
    if (hasMark)
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

int becomeGhostscript(const Request &request, const Settings &settings,
                      const std::string &workFolder)
{
    setEnvironment(workFolder);
    return becomeProgram(policyOf(settings.ghostscript, workFolder, !request.mark.empty()),
                         settings.ghostscript, rewritingArguments(request), settings.limits.memory);
}

} // namespace

ChildTask rewritingTask(const Request &request, const RunFiles &files, const Settings &settings,
                        const std::string &workFolder)
{
    const auto program =
        std::make_shared<Descriptor>(openProgram("Ghostscript", settings.ghostscript));
    ChildTask task;
    task.name = "Ghostscript";
    task.channels = {{draftChannel, files.ghostscriptOutput},
                     {documentChannel, files.document},
                     {programChannel, program->get()}};
    if (!request.mark.empty())
        task.channels.emplace_back(markChannel, files.mark);
    task.body = [program, request, settings, workFolder] {
        return becomeGhostscript(request, settings, workFolder);
    };
    return task;
}

} // namespace engine
