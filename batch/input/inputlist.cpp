#include "inputlist.h"

#include "batch/refusal.h"
#include "namelist.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <filesystem>

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace batch {

namespace {

struct Entry
{
    std::string name;
    bool isFolder;
};

bool isPdf(const std::string &name)
{
    return QByteArray::fromStdString(name).toLower().endsWith(".pdf");
}

// No link counts as one. What can't be looked at does: it then can't be read, and that is told.
// Mostly the folder knows already, and nothing has to be looked at.
bool mayBeFolder(const fs::directory_entry &entry)
{
    std::error_code error;
    const bool isLink = entry.is_symlink(error);
    return !isLink && (entry.is_directory(error) || error);
}

bool leadsToFolder(const fs::directory_entry &entry)
{
    std::error_code ignored;
    return entry.is_directory(ignored);
}

std::vector<Entry> entriesOf(const fs::path &folder, std::error_code &error)
{
    std::vector<Entry> entries;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const bool isFolder = mayBeFolder(*entry);
        std::string name = entry->path().filename();
        if (isFolder || (isPdf(name) && !leadsToFolder(*entry)))
            entries.push_back({std::move(name), isFolder});
    }
    std::ranges::sort(entries, {}, &Entry::name);
    return entries;
}

// Without "." and "..", which behind a link to a folder means that folder's parent.
QString absolutePath(const QString &path)
{
    const QString absolute = QDir::current().absoluteFilePath(path);
    if (!(absolute + u'/').contains("/../"_L1))
        return QDir::cleanPath(absolute);
    const QFileInfo info(absolute);
    return info.isDir() ? info.canonicalFilePath()
                        : QDir::cleanPath(info.dir().canonicalPath() + u'/' + info.fileName());
}

class Collector
{
public:
    explicit Collector(const InputChoice &choice)
        : m_choice(choice)
        , m_output(QFile::encodeName(choice.outputFolder).toStdString())
        , m_mayRepeat(choice.paths.size() > 1 || choice.listFile)
    {
    }

    void addOperand(const QString &path)
    {
        if (!QFileInfo(path).isDir())
            return add({.path = path});
        const QString root = path.endsWith(u'/') ? path : path + u'/';
        const fs::path folder = QFile::encodeName(root).toStdString();
        if (isOutput(folder))
            throw Refusal(u"the output folder is a folder to compress: "_s + path);
        addFolder(folder, root.size());
    }

    // What can't be named in the system's encoding can't be handed on either.
    void addBytes(const QByteArray &name)
    {
        const QString path = QFile::decodeName(name);
        if (QFile::encodeName(path) == name)
            addOperand(absolutePath(path));
        else
            add({.path = path, .problem = u"its name is not in UTF-8"_s});
    }

    InputFiles take() { return std::move(m_files); }

private:
    void add(InputFile file)
    {
        // Two names that aren't in UTF-8 may look the same.
        const bool mayRepeat = m_mayRepeat && file.problem.isEmpty();
        if (mayRepeat && m_seen.contains(file.path))
            return;
        if (mayRepeat)
            m_seen.insert(file.path);
        if (m_choice.shard.has(m_place++))
            m_files.push_back(std::move(file));
    }

    void addFolder(const fs::path &folder, qsizetype rootLength)
    {
        std::error_code error;
        const std::vector<Entry> entries = entriesOf(folder, error);
        if (error) {
            add({.path = QFile::decodeName(folder.c_str()),
                 .problem =
                     u"the folder can't be read: "_s + QString::fromStdString(error.message())});
        }
        for (const Entry &entry : entries) {
            const fs::path path = folder / entry.name;
            if (!entry.isFolder)
                addFound(path, rootLength);
            else if (!isOutput(path))
                addFolder(path, rootLength);
        }
    }

    void addFound(const fs::path &found, qsizetype rootLength)
    {
        const QByteArray name = QByteArray::fromStdString(found);
        const QString path = QFile::decodeName(name);
        add({.path = path,
             .rootLength = rootLength,
             .problem =
                 QFile::encodeName(path) == name ? QString() : u"its name is not in UTF-8"_s});
    }

    [[nodiscard]] bool isOutput(const fs::path &folder) const
    {
        std::error_code unknown;
        return fs::equivalent(folder, m_output, unknown);
    }

    const InputChoice &m_choice;
    fs::path m_output;
    bool m_mayRepeat;
    qsizetype m_place = 0;
    QSet<QString> m_seen;
    InputFiles m_files;
};

} // namespace

QString InputFile::folder() const
{
    const qsizetype length = path.lastIndexOf(u'/') - rootLength;
    return rootLength == 0 || length <= 0 ? QString() : path.mid(rootLength, length);
}

InputFiles inputFiles(const InputChoice &choice)
{
    Collector collector(choice);
    for (const QString &path : choice.paths) {
        if (path.isEmpty() || !QFileInfo::exists(path))
            throw Refusal(u"no such file or folder: "_s + path);
    }
    for (const QString &path : choice.paths)
        collector.addOperand(absolutePath(path));
    if (choice.listFile)
        forEachName(*choice.listFile,
                    [&collector](const QByteArray &name) { collector.addBytes(name); });
    return collector.take();
}

} // namespace batch
