#include "output.h"

#include "system/filesize.h"
#include "system/platform.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

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

Output::Output(const std::string &path, const Record &record)
    : m_path(path)
    , m_name(path.substr(path.rfind('/') + 1))
    , m_folder(open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    , m_record(record)
{
    if (!m_folder)
        throw Failure::ofSystem("no output folder for " + path);
    m_folderPath = absolute(folderOf(path));
    makePlaceholder();
}

// What is there already is never put on record.
void Output::makePlaceholder()
{
    if (idOf(m_folder.get(), m_name))
        throw nameTaken();
    m_record.remember(Recorded::Placeholder, m_folderPath + "/" + m_name);
    // O_EXCL refuses a symbolic link too, wherever it leads.
    m_placeholder = Descriptor(openat(m_folder.get(), m_name.c_str(),
                                      O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (m_placeholder) {
        m_record.identify(Recorded::Placeholder, m_placeholder.get());
        return;
    }
    const int error = errno;
    m_record.forget(Recorded::Placeholder);
    throw error == EEXIST ? nameTaken() : Failure::ofSystem("no output " + m_path, error);
}

Failure Output::nameTaken() const
{
    return Failure("the name of the copy is taken: " + m_path, nameTakenStatus);
}

Output::~Output()
{
    if (isPlaceholder(m_name))
        unlinkat(m_folder.get(), m_name.c_str(), 0);
    m_record.forget(Recorded::Placeholder);
}

bool Output::isPlaceholder(const std::string &name) const
{
    const auto made = m_placeholder ? idOf(m_placeholder.get()) : std::nullopt;
    return made && made == idOf(m_folder.get(), name) && sizeOf(m_placeholder.get()) == 0;
}

void Output::replaceBy(const std::string &name)
{
    if (!idOf(m_folder.get(), m_name))
        throw Failure("the copy's name was removed by somebody else: " + m_path);
    if (!isPlaceholder(m_name))
        throw nameTaken();
    if (!exchange(name) &&
        renameat(m_folder.get(), name.c_str(), m_folder.get(), m_name.c_str()) != 0)
        throw Failure::ofSystem("no output " + m_path);
    m_placeholder.close();
}

// What comes out under the other name shows what was there in the very moment, and can be put back.
bool Output::exchange(const std::string &name)
{
    if (!platform::exchangeFiles(m_folder.get(), name, m_name)) {
        if (errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP)
            return false;
        throw Failure::ofSystem("no output " + m_path);
    }
    if (!isPlaceholder(name)) {
        if (!platform::exchangeFiles(m_folder.get(), name, m_name))
            throw Failure(nameTaken().what() + ("; what had it is now " + name), nameTakenStatus);
        throw nameTaken();
    }
    unlinkat(m_folder.get(), name.c_str(), 0);
    return true;
}

} // namespace engine
