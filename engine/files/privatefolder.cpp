#include "privatefolder.h"

#include "system/failure.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace engine {

namespace fs = std::filesystem;

namespace {

// Where temporary files are kept when the system starts anew.
constexpr auto lastingFolder = "/var/tmp";

bool isUsable(const char *folder)
{
    return access(folder, W_OK | X_OK) == 0;
}

fs::path temporaryFolder()
{
    const char *folder = std::getenv("TMPDIR");
    return folder && *folder == '/' && isUsable(folder) ? folder : "/tmp";
}

// Whatever the user's umask takes away from others, it must leave to us what only we can reach.
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

std::unique_ptr<RunFolder> makeLastingFolder()
{
    try {
        return isUsable(lastingFolder) ? std::make_unique<RunFolder>(lastingFolder) : nullptr;
    } catch (const Failure &) {
        return nullptr;
    }
}

} // namespace

PrivateFolder::Folders PrivateFolder::makeFolders()
{
    const OwnUmask ownUmask;
    const fs::path parent = temporaryFolder();
    removeLeftRunFolders(parent);
    removeLeftRunFolders(lastingFolder);
    Folders folders = {std::make_unique<RunFolder>(parent), makeLastingFolder()};
    if (mkdir((folders.own->path() / "work").c_str(), S_IRWXU) != 0)
        throw Failure::ofSystem("no temporary folder in " + parent.string());
    return folders;
}

PrivateFolder::PrivateFolder()
    : PrivateFolder(makeFolders())
{
}

PrivateFolder::PrivateFolder(Folders folders)
    : m_folder(std::move(folders.own))
    , m_lasting(std::move(folders.lasting))
    , m_record(m_lasting ? m_lasting->path() : m_folder->path(),
               m_lasting ? m_lasting->descriptor() : m_folder->descriptor())
{
}

Descriptor PrivateFolder::openFile() const
{
    const fs::path path = m_folder->path() / "scratch";
    Descriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file)
        throw Failure::ofSystem("no temporary file");
    std::error_code ignored;
    fs::remove(path, ignored);
    return file;
}

// As far as the folder can be read: unlike a range-for, it throws nothing on the way.
std::uintmax_t PrivateFolder::workSize() const
{
    std::uintmax_t size = 0;
    std::error_code error;
    for (fs::directory_iterator file(workFolder(), error), end; !error && file != end;
         file.increment(error)) {
        std::error_code gone;
        const std::uintmax_t fileSize = file->file_size(gone);
        size += gone ? 0 : fileSize;
    }
    return size;
}

} // namespace engine
