#include "output.h"

#include "system/failure.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>

namespace engine {

namespace {

std::string folderOf(const std::string &path)
{
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

std::string absolute(const std::string &folder)
{
    std::error_code error;
    std::string path = std::filesystem::canonical(folder, error);
    if (error)
        throw Failure("no path to the output folder " + folder + ": " + error.message());
    return path;
}

} // namespace

Output::Output(const std::string &path)
    : m_path(path)
    , m_name(path.substr(path.rfind('/') + 1))
    , m_folder(open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    if (!m_folder)
        throw Failure::ofSystem("no output folder for " + path);
    m_folderPath = absolute(folderOf(path));
    // O_EXCL refuses a symbolic link too, wherever it leads.
    m_placeholder = Descriptor(openat(m_folder.get(), m_name.c_str(),
                                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!m_placeholder)
        throw Failure::ofSystem("no output " + path);
}

Output::~Output()
{
    if (isUntouched())
        unlinkat(m_folder.get(), m_name.c_str(), 0);
}

bool Output::isUntouched() const
{
    struct stat made = {};
    struct stat there = {};
    return m_placeholder && fstat(m_placeholder.get(), &made) == 0 &&
           fstatat(m_folder.get(), m_name.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0 &&
           made.st_dev == there.st_dev && made.st_ino == there.st_ino && there.st_size == 0;
}

void Output::replaceBy(const std::string &name)
{
    if (!isUntouched())
        throw Failure("output removed or changed by somebody else: " + m_path);
    if (renameat(m_folder.get(), name.c_str(), m_folder.get(), m_name.c_str()) != 0)
        throw Failure::ofSystem("no output " + m_path);
    m_placeholder.close();
}

} // namespace engine
