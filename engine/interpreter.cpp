#include "interpreter.h"

#include "channels.h"
#include "confinement.h"
#include "failure.h"
#include "ghostscript.h"
#include "memorylimit.h"
#include "platform.h"

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

// What the descriptors of the child stand for, held until it has its own.
struct Held
{
    Descriptor program;
    Descriptor passwords;
};

Descriptor openProgram(const std::string &path)
{
    Descriptor program(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!program)
        throw Failure::ofSystem("Ghostscript " + path, errno, notStarted);
    return program;
}

// A pipe, because it lies on no disk and in no process list.
Descriptor pipeWith(const std::string &text)
{
    int ends[2];
    if (pipe(ends) != 0)
        throw Failure::ofSystem("no pipe");
    Descriptor readEnd(ends[0]);
    const Descriptor writeEnd(ends[1]);
    fcntl(ends[1], F_SETFL, O_NONBLOCK);
    if (write(ends[1], text.data(), text.size()) != ssize_t(text.size()))
        throw Failure("the passwords are too long");
    return readEnd;
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
void allowScript(Reach &reach, const std::string &script, const std::string &interpreter)
{
    reach.program = -1;
    reach.morePrograms = true;
    for (const char *folder : {"/bin", "/usr/bin", "/usr/local/bin", "/lib", "/lib64", "/usr/lib",
                               "/usr/libexec", "/usr/local/lib", "/opt"})
        reach.executable.emplace_back(folder);
    reach.executable.insert(reach.executable.end(), {script, interpreter});
}

Reach reachOf(const std::string &ghostscript, const std::string &workFolder, bool hasMark)
{
    const char *home = std::getenv("HOME");
    Reach reach;
    reach.readable = systemFilesOf(ghostscript, home ? home : "");
    reach.executable = platform::loadersOf(programChannel);
    reach.readableDescriptors = {documentChannel};
    if (hasMark)
        reach.readableDescriptors.push_back(markChannel);
    reach.writableDescriptors = {draftChannel};
    reach.writableFolders = {workFolder};
    reach.program = programChannel;
    if (const std::string interpreter = scriptInterpreterOf(programChannel); !interpreter.empty())
        allowScript(reach, ghostscript, interpreter);
    return reach;
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

int becomeGhostscript(const Job &job, const Settings &settings, const std::string &workFolder)
{
    const std::string &ghostscript = settings.ghostscript;
    setEnvironment(workFolder);
    std::vector<std::string> words = {ghostscript};
    words.insert(words.end(), job.arguments.begin(), job.arguments.end());
    std::vector<char *> argv;
    argv.reserve(words.size() + 1);
    for (std::string &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    const Reach reach = reachOf(ghostscript, workFolder, !job.mark.empty());
    confine(reach);
    limitMemory(settings.limits.memory);
    platform::execute(reach.program, ghostscript, argv.data());
    std::fprintf(stderr, "corvgs: %s: %s\n", ghostscript.c_str(), std::strerror(errno));
    return notStarted;
}

} // namespace

Work interpretation(const Job &job, const Material &material, const Settings &settings,
                    const std::string &workFolder)
{
    const auto held = std::make_shared<Held>();
    held->program = openProgram(settings.ghostscript);
    Work work;
    work.channels = {{draftChannel, material.interpretation},
                     {documentChannel, material.document},
                     {programChannel, held->program.get()}};
    if (!job.mark.empty())
        work.channels.emplace_back(markChannel, material.mark);
    if (!job.argumentFile.empty()) {
        held->passwords = pipeWith(job.argumentFile);
        work.channels.emplace_back(passwordChannel, held->passwords.get());
    }
    work.body = [held, job, settings, workFolder] {
        return becomeGhostscript(job, settings, workFolder);
    };
    return work;
}

} // namespace engine
