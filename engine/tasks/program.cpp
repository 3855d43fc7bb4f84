#include "program.h"

#include "confinement/memorylimit.h"
#include "confinement/sanitizer.h"
#include "ghostscript/installation.h"
#include "process/channels.h"
#include "system/failure.h"
#include "system/platform.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>

namespace engine {

namespace {

constexpr int notStarted = 127;

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

// Some have put a script in a program's place that starts the real one. It can call what is
// installed; all the rest is as closed to it and to what it starts as it would be to the real one.
void allowScript(AccessPolicy &policy, const std::string &script, const std::string &interpreter)
{
    policy.program = -1;
    policy.morePrograms = true;
    for (const char *folder : {"/bin", "/usr/bin", "/usr/local/bin", "/lib", "/lib64", "/usr/lib",
                               "/usr/libexec", "/usr/local/lib", "/opt"})
        policy.executable.emplace_back(folder);
    policy.executable.insert(policy.executable.end(), {script, interpreter});
}

} // namespace

Descriptor openProgram(const std::string &name, const std::string &path)
{
    Descriptor program(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!program)
        throw Failure::ofSystem(name + " " + path, errno, notStarted);
    return program;
}

void allowProgram(AccessPolicy &policy, const std::string &path)
{
    const char *home = std::getenv("HOME");
    policy.readable = systemFilesOf(path, home ? home : "");
    policy.executable = platform::loadersOf(programChannel);
    policy.program = programChannel;
    if (const std::string interpreter = scriptInterpreterOf(programChannel); !interpreter.empty())
        allowScript(policy, path, interpreter);
}

int becomeProgram(const AccessPolicy &policy, const std::string &path,
                  const std::vector<std::string> &arguments, std::uintmax_t memory)
{
    std::vector<std::string> words = {path};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char *> argv;
    argv.reserve(words.size() + 1);
    for (std::string &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    limitOwnMemory(memory);
    confine(policy);
    if (hasSanitizer) // which needs memory until here
        limitMemory(memory);
    platform::execute(policy.program, path, argv.data());
    std::fprintf(stderr, "corvgs: %s: %s\n", path.c_str(), std::strerror(errno));
    return notStarted;
}

} // namespace engine
