#include "draft.h"

#include "system/failure.h"
#include "system/platform.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace engine {

namespace {

constexpr std::string_view namePrefix = ".corvgs-";
constexpr int attempts = 1000;

std::string draftName(int attempt)
{
    return std::string(namePrefix) + std::to_string(getpid()) + "-" + std::to_string(attempt);
}

} // namespace

bool isDraftName(const std::string &name)
{
    return name.starts_with(namePrefix);
}

Draft::Draft(const Output &output, const PrivateFolder &privateFolder)
    : m_privateFolder(privateFolder)
    , m_folder(output.folder())
    , m_folderPath(output.folderPath())
    , m_file(platform::openUnnamedFile(output.folder()))
{
    if (!m_file)
        giveName(false);
}

Draft::~Draft()
{
    if (m_name.empty())
        return;
    unlinkat(m_folder, m_name.c_str(), 0);
    m_privateFolder.forget();
}

// Remembered before it exists: there is no moment at which a kill leaves it behind for good.
void Draft::giveName(bool unnamed)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const std::string name = draftName(attempt);
        struct stat entry = {};
        if (fstatat(m_folder, name.c_str(), &entry, AT_SYMLINK_NOFOLLOW) == 0)
            continue;
        m_privateFolder.forget();
        m_privateFolder.remember(m_folderPath + "/" + name);
        if (!unnamed)
            m_file = Descriptor(openat(m_folder, name.c_str(),
                                       O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
        const bool named =
            unnamed ? platform::nameFile(m_file.get(), m_folder, name) : bool(m_file);
        if (named) {
            m_name = name;
            return;
        }
        if (errno != EEXIST)
            break;
    }
    const int error = errno;
    m_privateFolder.forget();
    throw Failure::ofSystem("no file in " + m_folderPath, error);
}

// Some milliseconds a copy, for which nobody finds an empty file under its name after a power cut;
// and some file systems, on other machines' disks above all, say only now that there was no room.
void Draft::save() const
{
    if (fsync(m_file.get()) != 0 && errno != EINVAL)
        throw Failure::ofSystem("no file in " + m_folderPath);
}

void Draft::publish(Output &output)
{
    save();
    if (m_name.empty())
        giveName(true);
    if (!m_file.close())
        throw Failure::ofSystem("no file in " + m_folderPath);
    output.replaceBy(m_name);
    m_name.clear();
    m_privateFolder.forget();
}

} // namespace engine
