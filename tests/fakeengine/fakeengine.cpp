// An engine that does as it is told. The folder named by CORVANE_FAKE_ENGINE holds
//   log              the arguments of every start: 0x1f before each, 0x1e behind the last
//   behaviour.NAME   "bytes exit signal gate" for the input of that base name
//   behaviour.       the same for all others
//   says.NAME        beside each: what it prints on standard output
//   complains.NAME   the same on standard error
//   taken.NAME       makes it end with 73 if its output has that base name
//   pids             the process number of every start, one a line
//   processors       the processors that it may use, where the system tells, one line a start
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

std::string baseName(const std::string &path)
{
    const std::string name = fs::path(path).filename();
    return name.substr(0, name.find('.'));
}

// The name under which the behaviour for that input is found: its own, or the empty one of all
// others.
std::string behaviourName(const fs::path &folder, const std::string &input)
{
    std::error_code tooLong;
    const std::string name = baseName(input);
    return fs::exists(folder / ("behaviour." + name), tooLong) ? name : "";
}

Behaviour readBehaviour(const fs::path &file)
{
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

void logPlace(const fs::path &folder)
{
    std::ofstream(folder / "pids", std::ios::app) << std::to_string(getpid()) + "\n" << std::flush;
    std::ifstream status("/proc/self/status");
    constexpr std::string_view allowed = "Cpus_allowed_list:\t";
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(allowed))
            std::ofstream(folder / "processors", std::ios::app)
                << line.substr(allowed.size()) + "\n"
                << std::flush;
    }
}

void print(const fs::path &file, std::FILE *stream)
{
    std::ifstream text(file);
    for (std::string line; std::getline(text, line);)
        std::fputs((line + "\n").c_str(), stream);
    std::fflush(stream);
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
    if (arguments == std::vector<std::string>{"--version"})
        return std::puts("10.00.0") < 0;
    logPlace(folder);
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

    if (fs::exists(folder / ("taken." + baseName(output))))
        return 73;
    const std::string name = behaviourName(folder, input);
    const Behaviour behaviour = readBehaviour(folder / ("behaviour." + name));
    print(folder / ("says." + name), stdout);
    print(folder / ("complains." + name), stderr);
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
