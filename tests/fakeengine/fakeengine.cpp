// An engine that does as it is told. The folder named by CORVANE_FAKE_ENGINE holds
//   log              the arguments of every start: 0x1f before each, 0x1e behind the last
//   behaviour.NAME   "bytes exit signal gate" for the input of that base name
//   behaviour.       the same for all others
//   gate             a FIFO; an engine that waits reads one byte from it
//   ended            a byte for every engine that came to its end

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Behaviour
{
    long long bytes = 0;
    int exitCode = 0;
    int signal = 0;
    int gate = 0;
};

Behaviour behaviourFor(const fs::path &folder, const std::string &input)
{
    const std::string name = fs::path(input).filename();
    fs::path file = folder / ("behaviour." + name.substr(0, name.find('.')));
    std::error_code tooLong;
    if (!fs::exists(file, tooLong))
        file = folder / "behaviour.";
    Behaviour behaviour;
    std::ifstream(file) >> behaviour.bytes >> behaviour.exitCode >> behaviour.signal >>
        behaviour.gate;
    return behaviour;
}

// One write per start, so that engines that run side by side don't mix their lines.
void logStart(const fs::path &folder, const std::vector<std::string> &arguments)
{
    std::string line;
    for (const std::string &argument : arguments)
        line += '\x1f' + argument;
    line += '\x1e';
    std::ofstream(folder / "log", std::ios::app) << line << std::flush;
}

void waitAtGate(const fs::path &folder)
{
    const int gate = open((folder / "gate").c_str(), O_RDONLY);
    char token = 0;
    if (gate < 0 || read(gate, &token, 1) != 1)
        std::abort();
}

} // namespace

int main(int argc, char *argv[])
{
    const char *folderName = std::getenv("CORVANE_FAKE_ENGINE");
    if (!folderName)
        return EXIT_FAILURE;
    const fs::path folder = folderName;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    logStart(folder, arguments);

    constexpr std::string_view outputSwitch = "-sOutputFile=";
    std::string output;
    std::string input;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i].starts_with(outputSwitch))
            output = arguments[i].substr(outputSwitch.size());
        if (arguments[i] == "-f" && i + 1 < arguments.size())
            input = arguments[i + 1];
    }

    const Behaviour behaviour = behaviourFor(folder, input);
    if (behaviour.bytes >= 0) {
        std::ofstream(output).flush();
        fs::resize_file(output, static_cast<std::uintmax_t>(behaviour.bytes));
    }
    if (behaviour.gate)
        waitAtGate(folder);
    std::ofstream(folder / "ended", std::ios::app) << '.' << std::flush;
    if (behaviour.signal)
        std::raise(behaviour.signal);
    return behaviour.exitCode;
}
