#include "inputfile.h"

#include "system/failure.h"

#include <fcntl.h>
#include <tuple>

namespace engine {

namespace {

auto stateOf(const struct stat &entry)
{
#ifdef __APPLE__
    const timespec &written = entry.st_mtimespec;
    const timespec &changed = entry.st_ctimespec;
#else
    const timespec &written = entry.st_mtim;
    const timespec &changed = entry.st_ctim;
#endif
    return std::make_tuple(entry.st_size, written.tv_sec, written.tv_nsec, changed.tv_sec,
                           changed.tv_nsec);
}

} // namespace

// Not waiting: a pipe that nobody fills is no document.
InputFile::InputFile(const std::string &path)
    : m_path(path)
    , m_file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC))
{
    if (!m_file || fstat(m_file.get(), &m_entry) != 0)
        throw Failure::ofSystem(path);
    if (!S_ISREG(m_entry.st_mode))
        throw Failure(path + ": not a file");
}

void InputFile::expectUnchanged() const
{
    struct stat now = {};
    if (fstat(m_file.get(), &now) != 0)
        throw Failure::ofSystem(m_path);
    if (stateOf(now) != stateOf(m_entry))
        throw Failure(m_path + ": it was changed while it was read");
}

} // namespace engine
