#include "draft.h"

#include "system/failure.h"
#include "system/platform.h"

#include <fcntl.h>

namespace engine {

namespace {

constexpr int attempts = 1000;

std::string draftName(int attempt)
{
    return ".corvgs-" + std::to_string(getpid()) + "-" + std::to_string(attempt);
}

} // namespace

Draft::Draft(const Output &output, const Record &record)
    : m_record(record)
    , m_folder(output.folder())
    , m_folderPath(output.folderPath())
    , m_file(platform::openUnnamedFile(output.folder()))
{
    if (!m_file)
        giveName();
}

// Somebody else's file that came under the name stays there.
Draft::~Draft()
{
    if (m_name.empty())
        return;
    if (m_id && m_id == idOf(m_folder, m_name))
        unlinkat(m_folder, m_name.c_str(), 0);
    m_record.forget(Recorded::Draft);
}

// False (and errno) if there is something of that name, or if it can't be had.
bool Draft::take(const std::string &name)
{
    if (m_file) {
        m_record.identify(Recorded::Draft, m_file.get());
        return platform::nameFile(m_file.get(), m_folder, name);
    }
    m_file = Descriptor(
        openat(m_folder, name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (m_file)
        m_record.identify(Recorded::Draft, m_file.get());
    return bool(m_file);
}

void Draft::giveName()
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const std::string name = draftName(attempt);
        if (idOf(m_folder, name))
            continue;
        m_record.remember(Recorded::Draft, m_folderPath + "/" + name);
        if (take(name)) {
            m_name = name;
            m_id = idOf(m_file.get());
            return;
        }
        const int error = errno;
        m_record.forget(Recorded::Draft);
        if (error != EEXIST)
            throw Failure::ofSystem("no file in " + m_folderPath, error);
    }
    throw Failure("no file in " + m_folderPath + ": no name is free");
}

// Some milliseconds a copy, for which nobody finds an empty file under its name after a power cut;
// and some file systems, on other machines' disks above all, say only now that there was no room.
void Draft::save()
{
    if ((fsync(m_file.get()) != 0 && errno != EINVAL) || !m_file.close())
        throw Failure::ofSystem("the copy can't be saved in " + m_folderPath);
}

void Draft::publish(Output &output)
{
    if (m_name.empty())
        giveName();
    save();
    output.replaceBy(m_name);
    m_name.clear();
    m_record.forget(Recorded::Draft);
}

} // namespace engine
