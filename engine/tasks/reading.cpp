#include "reading.h"

#include "confinement/processlimits.h"
#include "process/channels.h"
#include "program.h"
#include "system/filesize.h"

#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

namespace engine {

namespace {

struct Command
{
    std::string name;
    std::string path;
    std::vector<std::string> arguments;
    std::uintmax_t mostBytes; ///< of output
};

// Nobody needs to know what the reader has to complain about.
void placeStandardStreams()
{
    dup2(draftChannel, STDOUT_FILENO);
    close(draftChannel);
    dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
    close(reportChannel);
}

int becomeReader(const Command &command, const ReaderLimits &limits)
{
    placeStandardStreams();
    limitProcessorTime(limits.time);
    limitFileSize(command.mostBytes);
    AccessPolicy policy;
    allowProgram(policy, command.path);
    policy.readableDescriptors = {documentChannel};
    return becomeProgram(policy, command.path, command.arguments, limits.memory);
}

ChildTask taskOf(const Command &command, int document, int output, const ReaderLimits &limits)
{
    const auto program = std::make_shared<Descriptor>(openProgram(command.name, command.path));
    ChildTask task;
    task.name = command.name;
    task.channels = {
        {draftChannel, output}, {documentChannel, document}, {programChannel, program->get()}};
    task.body = [program, command, limits] { return becomeReader(command, limits); };
    task.written = [output] { return sizeOf(output); };
    task.disks = {output};
    return task;
}

std::string inDecimals(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.4f", number);
    return text;
}

} // namespace

bool areThere(const ReaderPrograms &programs)
{
    return access(programs.texts.c_str(), X_OK) == 0 &&
           access(programs.pictures.c_str(), X_OK) == 0;
}

ChildTask textTask(const ReaderPrograms &programs, int document, int output,
                   const ReaderLimits &limits)
{
    const std::vector<std::string> arguments = {
        "-q", "-raw", "-enc", "UTF-8", "-eol", "unix", nameOf(documentChannel), "-",
    };
    return taskOf({"pdftotext", programs.texts, arguments, limits.text}, document, output, limits);
}

ChildTask drawingTask(const ReaderPrograms &programs, const Drawing &drawing, int document,
                      int output, const ReaderLimits &limits)
{
    const std::vector<std::string> arguments = {
        "-q",
        "-cropbox",
        "-r",
        inDecimals(drawing.resolution),
        "-f",
        std::to_string(drawing.pages.front().page + 1),
        "-l",
        std::to_string(drawing.pages.back().page + 1),
        nameOf(documentChannel),
    };
    return taskOf({"pdftoppm", programs.pictures, arguments, drawing.mostBytes()}, document, output,
                  limits);
}

} // namespace engine
