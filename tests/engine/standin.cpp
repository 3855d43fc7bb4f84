// Stands in Ghostscript's place and does what STANDIN says, a verb and mostly a path:
//
//   the keys of "attempts" below and of callAttempts()
//                   tries it: status 10 when it could, 20 when it was denied
//   arguments       prints its arguments, one a line
//   descriptors     prints the numbers of those that are open
//   wait            says "ready" and waits for ever
//   loop crash      what the words say
//   memory          takes MiB after MiB: status 20 when it gets no more, 10 after 6 GiB
//   flood           writes to its standard output for ever
//   fill            writes 48 MiB into the file and waits for ever
//   fill-hidden     the same into a temporary file that it has removed
//   fill-many       the same into 48 temporary files
//   talk            says a mebibyte and becomes Ghostscript
//   unfolder        removes what is in the folder, and the folder, and becomes Ghostscript

#include "standincalls.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int could = 10;
constexpr int denied = 20;

std::string path;
char **arguments;

bool canOpen(int flags)
{
    return open(path.c_str(), flags, 0600) >= 0;
}

bool canRead()
{
    char byte = 0;
    const int file = open(path.c_str(), O_RDONLY);
    return file >= 0 && read(file, &byte, 1) == 1;
}

bool canList()
{
    DIR *folder = opendir(path.c_str());
    return folder && readdir(folder);
}

bool canStart(const char *program)
{
    int status = -1;
    // vfork and fork are one to this program, but not to a filter.
    const pid_t child = fork();
    if (child == 0) {
        execl(program, program, "-c", "exit 0", nullptr);
        _exit(1);
    }
    return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

// Without a process in between, as an engine would that has given up on its own work.
bool canBecomeShell()
{
    execl("/bin/sh", "sh", "-c", "exit 10", nullptr);
    return false;
}

bool canFork()
{
    const pid_t child = fork();
    if (child == 0)
        _exit(0);
    return child > 0;
}

bool canTakeMemory()
{
    for (int mebibytes = 0; mebibytes < 6144; ++mebibytes) {
        if (mmap(nullptr, 1 << 20, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) ==
            MAP_FAILED)
            return false;
    }
    return true;
}

const std::map<std::string, std::function<bool()>> attempts = {
    {"read", canRead},
    {"list", canList},
    {"write", [] { return canOpen(O_WRONLY | O_CREAT); }},
    {"append", [] { return canOpen(O_WRONLY | O_APPEND); }},
    {"remove", [] { return unlink(path.c_str()) == 0; }},
    {"chmod", [] { return chmod(path.c_str(), 0777) == 0; }},
    {"truncate", [] { return truncate(path.c_str(), 0) == 0; }},
    {"link", [] { return link(path.c_str(), (path + ".link").c_str()) == 0; }},
    {"mkdir", [] { return mkdir(path.c_str(), 0700) == 0; }},
    {"start-shell", [] { return canStart("/bin/sh"); }},
    {"become-shell", canBecomeShell},
    {"fork", canFork},
    {"socket", [] { return socket(AF_INET, SOCK_STREAM, 0) >= 0; }},
    {"local-socket", [] { return socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }},
    {"kill", [] { return kill(std::atoi(path.c_str()), 0) == 0; }},
    {"memory", canTakeMemory},
};

int becomeGhostscript()
{
    arguments[0] = std::getenv("STANDIN_GHOSTSCRIPT");
    execv(arguments[0], arguments);
    return 1;
}

int printArguments()
{
    for (char **argument = arguments + 1; *argument; ++argument)
        std::puts(*argument);
    return 0;
}

int printDescriptors()
{
    for (int number = 0; number < 1000; ++number) {
        if (fcntl(number, F_GETFD) >= 0)
            std::printf("%d ", number);
    }
    return 0;
}

int wait()
{
    std::puts("ready");
    std::fflush(stdout);
    for (;;)
        pause();
}

int loop()
{
    for (volatile int turn = 0;;)
        turn = !turn;
}

// Whatever became of it: what follows is not to be seen as an end of one's own.
int fill(const std::vector<int> &files)
{
    const std::string mebibyte(1 << 20, 'x');
    for (int count = 0; count < 48; ++count) {
        const int file = files[std::size_t(count) % files.size()];
        if (write(file, mebibyte.data(), mebibyte.size()) < 0)
            return denied;
    }
    return wait();
}

int flood()
{
    const std::string mebibyte(1 << 20, 'x');
    while (write(STDOUT_FILENO, mebibyte.data(), mebibyte.size()) > 0) {
    }
    return denied;
}

int temporaryFile(int number)
{
    path = std::getenv("TMPDIR") + ("/" + std::to_string(number));
    return open(path.c_str(), O_WRONLY | O_CREAT, 0600);
}

int fillHidden()
{
    const int file = temporaryFile(0);
    unlink(path.c_str());
    return fill({file});
}

int fillMany()
{
    std::vector<int> files;
    for (int number = 0; number < 48; ++number)
        files.push_back(temporaryFile(number));
    return fill(files);
}

int crash()
{
    std::raise(SIGSEGV);
    return 0;
}

int talk()
{
    const std::string line(1023, 'x');
    for (int count = 0; count < 1024; ++count)
        std::puts(line.c_str());
    std::fflush(stdout);
    return becomeGhostscript();
}

int unfolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
    return becomeGhostscript();
}

const std::map<std::string, std::function<int()>> behaviours = {
    {"arguments", printArguments},
    {"descriptors", printDescriptors},
    {"wait", wait},
    {"loop", loop},
    {"crash", crash},
    {"flood", flood},
    {"fill", [] { return fill({open(path.c_str(), O_WRONLY)}); }},
    {"fill-hidden", fillHidden},
    {"fill-many", fillMany},
    {"talk", talk},
    {"unfolder", unfolder},
};

} // namespace

int main(int, char *argv[])
{
    arguments = argv;
    const std::string wish = std::getenv("STANDIN");
    const auto colon = wish.find(':');
    const std::string verb = wish.substr(0, colon);
    path = colon == std::string::npos ? "" : wish.substr(colon + 1);
    if (const auto behaviour = behaviours.find(verb); behaviour != behaviours.end())
        return behaviour->second();
    if (const auto attempt = attempts.find(verb); attempt != attempts.end())
        return attempt->second() ? could : denied;
    return callAttempts().at(verb)(std::atoi(path.c_str())) ? could : denied;
}
