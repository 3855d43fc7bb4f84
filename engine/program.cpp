#include "program.h"

#include "confinement/confinement.h"
#include "process/messagewriter.h"
#include "process/signals.h"
#include "request/request.h"
#include "request/switches.h"
#include "system/failure.h"
#include "system/platform.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace engine {

namespace {

// A file that took the place of a closed standard stream would get the messages.
void openStandardStreams()
{
    int number = open("/dev/null", O_RDWR);
    while (number >= 0 && number < STDERR_FILENO)
        number = dup(number);
    if (number > STDERR_FILENO)
        close(number);
}

// The process list shows argv to everybody.
void blankPasswords(int argc, char *argv[])
{
    for (const std::string_view name : {userPasswordSwitch, ownerPasswordSwitch}) {
        for (int index = 1; index < argc; ++index) {
            if (std::string_view(argv[index]).starts_with(name))
                std::fill_n(argv[index] + name.size(), std::strlen(argv[index]) - name.size(), ' ');
        }
    }
}

// The process confines itself to find out what works, so that it can't run its usual clean-up
// afterwards.
[[noreturn]] void sayConfinement()
{
    std::puts(confine({}).c_str());
    std::fflush(stdout);
    _exit(EXIT_SUCCESS);
}

int becomeGhostscript(const std::string &ghostscript, char *argv[])
{
    execv(ghostscript.c_str(), argv);
    throw Failure::ofSystem("Ghostscript " + ghostscript, errno, 127);
}

int carryOutPlan(const Plan &plan, char *argv[], const Settings &settings)
{
    if (std::holds_alternative<PassThrough>(plan))
        return becomeGhostscript(settings.ghostscript, argv);
    if (const auto *refusal = std::get_if<Refusal>(&plan))
        throw Failure(refusal->reason);
    platform::forbidCoreDumps();
    signals::catchAll();
    compress(std::get<Request>(plan), settings);
    return EXIT_SUCCESS;
}

int run(int argc, char *argv[], const Settings &settings)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments == std::vector<std::string>{"--confinement"})
        sayConfinement();
    const Plan plan = planFor(arguments);
    if (!std::holds_alternative<PassThrough>(plan))
        blankPasswords(argc, argv);
    return carryOutPlan(plan, argv, settings);
}

// Not even to say why it ends does it wait for ever.
void sayFailure(const std::string &reason)
{
    MessageWriter(STDERR_FILENO).tell("corvgs: " + reason + "\n");
}

} // namespace

int runCommandLine(int argc, char *argv[], const Settings &settings)
{
    openStandardStreams();
    try {
        return run(argc, argv, settings);
    } catch (const Failure &failure) {
        sayFailure(failure.what());
        return failure.status();
    } catch (const std::exception &error) {
        sayFailure(onOneLine(error.what()));
        return EXIT_FAILURE;
    }
}

} // namespace engine
