#include "record.h"

#include "system/failure.h"

#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace engine {

namespace fs = std::filesystem;

namespace {

// Links, because they are made in one step with all that they say.
struct Links
{
    const char *path;
    const char *inode;
};

constexpr Links linksOf(Recorded file)
{
    return file == Recorded::Placeholder ? Links{"placeholder", "placeholder-inode"}
                                         : Links{"draft", "draft-inode"};
}

struct Entry
{
    fs::path path;
    std::string inode; ///< empty: it was not identified
};

Entry entryIn(const fs::path &folder, Recorded file)
{
    const Links links = linksOf(file);
    std::error_code none;
    return {fs::read_symlink(folder / links.path, none),
            fs::read_symlink(folder / links.inode, none).string()};
}

// The device is left out: a disk may have another number after a power cut.
bool is(const struct stat &file, const Entry &entry)
{
    return entry.inode == std::to_string(file.st_ino);
}

bool isLeft(const struct stat &file, const Entry &placeholder, const Entry &draft)
{
    const bool empty = file.st_size == 0;
    return (empty && is(file, placeholder)) || is(file, draft);
}

std::optional<struct stat> ownFile(const fs::path &path)
{
    struct stat entry = {};
    if (path.empty() || lstat(path.c_str(), &entry) != 0 || !S_ISREG(entry.st_mode) ||
        entry.st_uid != geteuid())
        return {};
    return entry;
}

} // namespace

void Record::remember(Recorded file, const fs::path &path) const
{
    std::error_code error;
    fs::create_symlink(path, m_folder / linksOf(file).path, error);
    if (error)
        throw Failure("no temporary file: " + error.message());
    // Some milliseconds, for which the record outlives a power cut if the file does.
    fsync(m_descriptor);
}

void Record::identify(Recorded file, int descriptor) const
{
    struct stat entry = {};
    std::error_code ignored;
    if (fstat(descriptor, &entry) == 0)
        fs::create_symlink(std::to_string(entry.st_ino), m_folder / linksOf(file).inode, ignored);
}

void Record::forget(Recorded file) const
{
    std::error_code ignored;
    fs::remove(m_folder / linksOf(file).path, ignored);
    fs::remove(m_folder / linksOf(file).inode, ignored);
}

// While a copy takes the placeholder's place, each may have the other's name for a moment.
void clearRecorded(const fs::path &folder)
{
    const Entry placeholder = entryIn(folder, Recorded::Placeholder);
    const Entry draft = entryIn(folder, Recorded::Draft);
    std::error_code ignored;
    if (const auto file = ownFile(placeholder.path);
        file && file->st_size == 0 && (placeholder.inode.empty() || is(*file, placeholder)))
        fs::remove(placeholder.path, ignored);
    if (const auto file = ownFile(draft.path);
        file && (draft.inode.empty() ? file->st_size == 0 : isLeft(*file, placeholder, draft)))
        fs::remove(draft.path, ignored);
}

} // namespace engine
