// How long many files take on many processors, by how the list is divided:
//
//     shards COSTS FILES PROCESSORS SECONDS_A_TASK
//
// COSTS has a line "bytes seconds" for each measured file; the simulated ones are drawn from these.
// SECONDS_A_TASK is what a task costs before its first file. Prints a line for each way: the hours,
// how much longer than the files' time evenly spread, and the hours in which only some processors
// had work.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <limits>
#include <queue>
#include <random>
#include <vector>

namespace {

constexpr std::size_t processorsOfAMachine = 40;

struct File
{
    float bytes;
    float seconds;
};

using Files = std::vector<File>;

Files readCosts(const char *path)
{
    Files files;
    std::ifstream costs(path);
    for (File file = {}; costs >> file.bytes >> file.seconds;)
        files.push_back(file);
    return files;
}

// With the same seed each time, so that two ways are held against each other with one list.
Files draw(const Files &measured, std::size_t count)
{
    std::mt19937_64 random(1);
    std::uniform_int_distribution<std::size_t> any(0, measured.size() - 1);
    Files files(count);
    std::ranges::generate(files, [&] { return measured[any(random)]; });
    return files;
}

// Each part takes one of so many places of the list, in turn.
std::vector<double> parts(const Files &files, std::size_t count, double secondsATask)
{
    std::vector<double> seconds(count, secondsATask);
    for (std::size_t i = 0; i < files.size(); ++i)
        seconds[i % count] += static_cast<double>(files[i].seconds);
    return seconds;
}

// The same, with neighbours in one part, as folders lie in a list.
std::vector<double> blocks(const Files &files, std::size_t count, double secondsATask)
{
    std::vector<double> seconds(count, secondsATask);
    for (std::size_t i = 0; i < files.size(); ++i)
        seconds[i * count / files.size()] += static_cast<double>(files[i].seconds);
    return seconds;
}

struct End
{
    double first; ///< when the first processor has no more work, in seconds
    double last;
};

// Every processor takes the next task when it has done one.
End run(const std::vector<double> &tasks, std::size_t processors)
{
    std::priority_queue<double, std::vector<double>, std::greater<>> free;
    for (std::size_t i = 0; i < processors; ++i)
        free.push(0);
    double last = 0;
    for (const double task : tasks) {
        const double end = free.top() + task;
        free.pop();
        free.push(end);
        last = std::max(last, end);
    }
    return {.first = free.top(), .last = last};
}

// A task for each machine, which shares its part out among its processors file by file.
End runMachines(const Files &files, std::size_t processors, double secondsATask)
{
    const std::size_t machines = processors / processorsOfAMachine;
    End all = {.first = std::numeric_limits<double>::max(), .last = 0};
    for (std::size_t machine = 0; machine < machines; ++machine) {
        std::vector<double> part;
        for (std::size_t i = machine; i < files.size(); i += machines)
            part.push_back(static_cast<double>(files[i].seconds));
        const End end = run(part, processorsOfAMachine);
        all.first = std::min(all.first, end.first + secondsATask);
        all.last = std::max(all.last, end.last + secondsATask);
    }
    return all;
}

void print(const char *way, std::size_t tasks, const End &end, double evenly)
{
    std::printf("%-36s %9zu %9.2f %8.1f %% %9.2f\n", way, tasks, end.last / 3600,
                100 * (end.last / evenly - 1), (end.last - end.first) / 3600);
}

void compare(const char *order, const Files &files, std::size_t processors, double secondsATask)
{
    double sum = 0;
    for (const File &file : files)
        sum += static_cast<double>(file.seconds);
    const double evenly = sum / static_cast<double>(processors);
    std::printf("\n%s: %.2f hours if evenly spread\n", order, evenly / 3600);
    std::printf("%-36s %9s %9s %10s %9s\n", "", "tasks", "hours", "longer", "tail, h");
    print("static, blocks", processors, run(blocks(files, processors, secondsATask), processors),
          evenly);
    print("static, every N-th", processors, run(parts(files, processors, secondsATask), processors),
          evenly);
    print("static, a machine each, every N-th", processors / processorsOfAMachine,
          runMachines(files, processors, secondsATask), evenly);
    for (const std::size_t each : {4U, 16U, 64U, 256U, 1024U}) {
        const std::size_t tasks = std::min(processors * each, files.size());
        print("dynamic, every N-th", tasks, run(parts(files, tasks, secondsATask), processors),
              evenly);
    }
    const std::vector<double> single = parts(files, files.size(), 0);
    print("dynamic, file by file, at no cost", single.size(), run(single, processors), evenly);
}

} // namespace

int main(int argc, char *argv[])
{
    const Files measured = argc == 5 ? readCosts(argv[1]) : Files();
    if (measured.empty()) {
        std::fputs("see the head of shards.cpp\n", stderr);
        return 2;
    }
    const auto processors = static_cast<std::size_t>(std::atoll(argv[3]));
    const double secondsATask = std::atof(argv[4]);
    Files files = draw(measured, static_cast<std::size_t>(std::atoll(argv[2])));
    compare("in any order", files, processors, secondsATask);
    std::ranges::sort(files, {}, &File::bytes);
    compare("small files first", files, processors, secondsATask);
    std::ranges::reverse(files);
    compare("large files first", files, processors, secondsATask);
    return 0;
}
