#include "privatefolder.h"

#include "draft.h"
#include "system/failure.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace engine {

namespace fs = std::filesystem;

namespace {

// Links to the file to remember. It lies outside the engine's reach: what it names is removed.
constexpr const char *memory = "draft";

std::string prefix()
{
    return "corvgs-" + std::to_string(geteuid()) + "-";
}

fs::path temporaryFolder()
{
    const char *folder = std::getenv("TMPDIR");
    if (folder && *folder == '/' && access(folder, W_OK | X_OK) == 0)
        return folder;
    return "/tmp";
}

// The owner of a folder holds the lock as long as it lives. None if somebody else does, or if this
// is not a folder of ours.
Descriptor locked(const fs::path &folder)
{
    Descriptor lock(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat entry = {};
    if (!lock || fstat(lock.get(), &entry) != 0 || entry.st_uid != geteuid() ||
        flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        return {};
    return lock;
}

void removeFolder(const fs::path &folder)
{
    std::error_code ignored;
    const fs::path draft = fs::read_symlink(folder / memory, ignored);
    if (!draft.empty() && isDraftName(draft.filename()) &&
        fs::is_regular_file(fs::symlink_status(draft, ignored)))
        fs::remove(draft, ignored);
    fs::remove_all(folder, ignored);
}

// As far as the folder can be read: unlike a range-for, it throws nothing on the way.
template <typename Visit>
void forEachIn(const fs::path &folder, Visit visit)
{
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        visit(*entry);
}

void removeLeftovers(const fs::path &folder)
{
    forEachIn(folder, [](const fs::directory_entry &entry) {
        if (!entry.path().filename().string().starts_with(prefix()))
            return;
        if (const Descriptor lock = locked(entry.path()))
            removeFolder(entry.path());
    });
}

// Whatever the user's umask takes away from others, it must leave to us what only we can policy.
class OwnUmask
{
public:
    OwnUmask()
        : m_before(umask(S_IRWXG | S_IRWXO))
    {
    }
    ~OwnUmask() { umask(m_before); }
    OwnUmask(const OwnUmask &) = delete;
    OwnUmask &operator=(const OwnUmask &) = delete;

private:
    mode_t m_before;
};

fs::path makeFolder(const fs::path &parent)
{
    std::string name = parent / (prefix() + "XXXXXX");
    if (!mkdtemp(name.data()))
        throw Failure::ofSystem("no temporary folder in " + parent.string());
    return name;
}

bool isSame(int file, const fs::path &path)
{
    struct stat open = {};
    struct stat named = {};
    return fstat(file, &open) == 0 && lstat(path.c_str(), &named) == 0 &&
           open.st_ino == named.st_ino && open.st_dev == named.st_dev;
}

} // namespace

PrivateFolder::PrivateFolder()
{
    const OwnUmask ownUmask;
    const fs::path parent = temporaryFolder();
    removeLeftovers(parent);
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
    } while (!m_lock || !isSame(m_lock.get(), m_path));
    if (mkdir(workFolder().c_str(), S_IRWXU) != 0) {
        const Failure failure = Failure::ofSystem("no temporary folder in " + parent.string());
        removeFolder(m_path);
        throw failure;
    }
}

PrivateFolder::~PrivateFolder()
{
    removeFolder(m_path);
}

Descriptor PrivateFolder::openFile() const
{
    const fs::path path = m_path / "scratch";
    Descriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file)
        throw Failure::ofSystem("no temporary file");
    std::error_code ignored;
    fs::remove(path, ignored);
    return file;
}

std::uintmax_t PrivateFolder::workSize() const
{
    std::uintmax_t size = 0;
    forEachIn(workFolder(), [&size](const fs::directory_entry &file) {
        std::error_code gone;
        const std::uintmax_t fileSize = file.file_size(gone);
        size += gone ? 0 : fileSize;
    });
    return size;
}

void PrivateFolder::remember(const fs::path &file) const
{
    std::error_code error;
    fs::create_symlink(file, m_path / memory, error);
    if (error)
        throw Failure("no temporary file: " + error.message());
}

void PrivateFolder::forget() const
{
    std::error_code ignored;
    fs::remove(m_path / memory, ignored);
}

} // namespace engine
