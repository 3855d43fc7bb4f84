#include "rewriting.h"

#include "confinement/confinement.h"
#include "confinement/memorylimit.h"
#include "ghostscript/arguments.h"
#include "ghostscript/installation.h"
#include "process/channels.h"
#include "system/failure.h"
#include "system/platform.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace engine {

namespace {

constexpr int notStarted = 127;

Descriptor openProgram(const std::string &path)
{
    Descriptor program(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!program)
        throw Failure::ofSystem("Ghostscript " + path, errno, notStarted);
    return program;
}

// What the system starts for a script; empty if the program is none.
std::string scriptInterpreterOf(int program)
{
    char beginning[256] = {};
    if (pread(program, beginning, sizeof beginning - 1, 0) < 2)
        return {};
    const std::string line(beginning, std::strcspn(beginning, "\n"));
    if (!line.starts_with("#!"))
        return {};
    const auto begin = std::min(line.find_first_not_of(" \t", 2), line.size());
    return line.substr(begin, line.find_first_of(" \t", begin) - begin);
}

// Some have put a script in Ghostscript's place that starts the real one. It can call what is
// installed; all the rest is as closed to it and to what it starts as it is to Ghostscript.
void allowScript(AccessPolicy &policy, const std::string &script, const std::string &interpreter)
{
    policy.program = -1;
    policy.morePrograms = true;
    for (const char *folder : {"/bin", "/usr/bin", "/usr/local/bin", "/lib", "/lib64", "/usr/lib",
                               "/usr/libexec", "/usr/local/lib", "/opt"})
        policy.executable.emplace_back(folder);
    policy.executable.insert(policy.executable.end(), {script, interpreter});
}

AccessPolicy policyOf(const std::string &ghostscript, const std::string &workFolder, bool hasMark)
{
    const char *home = std::getenv("HOME");
    AccessPolicy policy;
    policy.readable = systemFilesOf(ghostscript, home ? home : "");
    policy.executable = platform::loadersOf(programChannel);
    policy.readableDescriptors = {documentChannel};
    if (hasMark)
        policy.readableDescriptors.push_back(markChannel);
    policy.writableDescriptors = {draftChannel};
    policy.writableFolders = {workFolder};
    policy.program = programChannel;
    if (const std::string interpreter = scriptInterpreterOf(programChannel); !interpreter.empty())
        allowScript(policy, ghostscript, interpreter);
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
    const std::string &ghostscript = settings.ghostscript;
    setEnvironment(workFolder);
    std::vector<std::string> words = {ghostscript};
    const std::vector<std::string> arguments = rewritingArguments(request);
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char *> argv;
    argv.reserve(words.size() + 1);
    for (std::string &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    const AccessPolicy policy = policyOf(ghostscript, workFolder, !request.mark.empty());
    confine(policy);
    limitMemory(settings.limits.memory);
    platform::execute(policy.program, ghostscript, argv.data());
    std::fprintf(stderr, "corvgs: %s: %s\n", ghostscript.c_str(), std::strerror(errno));
    return notStarted;
}

} // namespace

ChildTask rewritingTask(const Request &request, const RunFiles &files, const Settings &settings,
                        const std::string &workFolder)
{
    const auto program = std::make_shared<Descriptor>(openProgram(settings.ghostscript));
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
