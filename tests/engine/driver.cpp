// corvgs with its settings taken from the environment:
//
//   DRIVER_GHOSTSCRIPT  the executable that stands for Ghostscript
//   DRIVER_STALL        processor time without output, in seconds
//   DRIVER_MEMORY       address space, in MiB
//   DRIVER_OUTPUT       what may be written for a document of any size, in MiB
//   DRIVER_RESERVE      what is left free on the disk, in MiB
//   DRIVER_NO_SAFER     takes Ghostscript's own protection away

#include "engine/process/signals.h"
#include "engine/program.h"
#include "engine/system/failure.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::string variable(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

engine::Settings settings()
{
    engine::Settings settings = {variable("DRIVER_GHOSTSCRIPT"), {}};
    if (const std::string stall = variable("DRIVER_STALL"); !stall.empty())
        settings.limits.stall = std::chrono::seconds(std::stoi(stall));
    engine::Limits &limits = settings.limits;
    const std::pair<const char *, std::uintmax_t *> sizes[] = {
        {"DRIVER_MEMORY", &limits.memory},
        {"DRIVER_OUTPUT", &limits.output},
        {"DRIVER_RESERVE", &limits.reserve},
    };
    for (const auto &[name, size] : sizes) {
        if (const std::string mebibytes = variable(name); !mebibytes.empty())
            *size = std::stoull(mebibytes) << 20;
    }
    return settings;
}

int compressUnsafely(int argc, char *argv[])
{
    auto plan = engine::planFor({argv + 1, argv + argc});
    auto &request = std::get<engine::Request>(plan);
    std::replace(request.switches.begin(), request.switches.end(), std::string("-dSAFER"),
                 std::string("-dNOSAFER"));
    engine::signals::catchAll();
    try {
        engine::compress(request, settings());
        return EXIT_SUCCESS;
    } catch (const engine::Failure &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return failure.status();
    }
}

} // namespace

int main(int argc, char *argv[])
{
    if (!variable("DRIVER_NO_SAFER").empty())
        return compressUnsafely(argc, argv);
    return engine::runCommandLine(argc, argv, settings());
}
