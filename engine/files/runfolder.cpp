#include "runfolder.h"

#include "fileid.h"
#include "record.h"
#include "system/failure.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace engine {

namespace fs = std::filesystem;

namespace {

std::string prefix()
{
    return "corvgs-" + std::to_string(geteuid()) + "-";
}

// None if somebody else has it, or if this is not a folder of ours.
Descriptor locked(const fs::path &folder)
{
    Descriptor lock(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat entry = {};
    if (!lock || fstat(lock.get(), &entry) != 0 || entry.st_uid != geteuid() ||
        flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        return {};
    return lock;
}

fs::path makeFolder(const fs::path &parent)
{
    std::string name = parent / (prefix() + "XXXXXX");
    if (!mkdtemp(name.data()))
        throw Failure::ofSystem("no temporary folder in " + parent.string());
    return name;
}

} // namespace

RunFolder::RunFolder(const fs::path &parent)
{
    // Another run that clears up may take the new folder for a leftover before the lock is on.
    // Where it can't be locked for another reason, say for want of descriptors, it never will be.
    int attempts = 20;
    do {
        if (attempts-- == 0)
            throw Failure("no temporary folder in " + parent.string());
        m_path = makeFolder(parent);
        m_lock = locked(m_path);
        std::error_code ignored;
        if (!m_lock)
            fs::remove(m_path, ignored);
    } while (!m_lock || idOf(m_lock.get()) != idOf(AT_FDCWD, m_path));
}

RunFolder::~RunFolder()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

// As far as the folder can be read: unlike a range-for, it throws nothing on the way.
void removeLeftRunFolders(const fs::path &parent)
{
    std::error_code error;
    for (fs::directory_iterator entry(parent, error), end; !error && entry != end;
         entry.increment(error)) {
        const fs::path &folder = entry->path();
        if (!folder.filename().string().starts_with(prefix()))
            continue;
        if (const Descriptor lock = locked(folder)) {
            std::error_code ignored;
            clearRecorded(folder);
            fs::remove_all(folder, ignored);
        }
    }
}

} // namespace engine
