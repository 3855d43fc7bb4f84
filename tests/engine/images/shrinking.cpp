#include "shrinking.h"

#include "bench.h"
#include "documents.h"

#include "engine/pdf/copywriter.h"
#include "engine/pdf/document.h"
#include "support/defaultline.h"

#include <QTemporaryDir>
#include <QTemporaryFile>

#include <memory>

using namespace Qt::StringLiterals;

namespace shrinking {

namespace {

void fill(QTemporaryFile &file, const QByteArray &content)
{
    if (!file.open() || file.write(content) != content.size() || !file.flush())
        qWarning("a temporary file can't be written");
}

QByteArray ghostscript(const QByteArray &album, const std::vector<std::string> &words)
{
    QTemporaryDir folder;
    const QString input = folder.filePath(u"album.pdf"_s);
    const QString output = folder.filePath(u"written.pdf"_s);
    write(input, album);
    QStringList arguments = QString(defaultline::base).split(u' ', Qt::SkipEmptyParts);
    for (const std::string &word : engine::albumWords(words))
        arguments << QString::fromStdString(word);
    tools::outputOf(Bench::ghostscript(),
                    arguments + QStringList{"-sOutputFile=" + output, u"-f"_s, input});
    return contentOf(output);
}

} // namespace

std::vector<std::string> words(const QStringList &changes)
{
    QStringList result = QString(defaultline::images).split(u' ', Qt::SkipEmptyParts);
    for (const QString &change : changes) {
        const QString name = change.left(change.indexOf('=') + 1);
        result.removeIf([&](const QString &word) { return word.startsWith(name); });
        result << change;
    }
    std::vector<std::string> words;
    for (const QString &word : result)
        words.push_back(word.toStdString());
    return words;
}

Result shrunk(const QByteArray &bytes, const QStringList &changes, const std::set<int> &excluded)
{
    const auto line = words(changes);
    const engine::ImageOptions options = engine::imageOptionsOf(line);
    QTemporaryFile input, album, output, copy;
    fill(input, bytes);
    fill(album, {});
    engine::AlbumIndex index;
    Result result;
    {
        engine::Document document(input.handle(), engine::Trust::Foreign);
        index = engine::writeAlbum(document.pdf(), engine::surveyImages(document.pdf()), options,
                                   album.handle());
    }
    result.albumPages = int(index.size());
    result.album = contentOf(album.fileName());
    std::unique_ptr<engine::Document> written;
    if (!index.empty()) {
        result.written = ghostscript(result.album, line);
        fill(output, result.written);
        written = std::make_unique<engine::Document>(output.handle(), engine::Trust::Own);
    }
    engine::Document document(input.handle(), engine::Trust::Foreign);
    result.taken =
        takeImages(document.pdf(), written ? &written->pdf() : nullptr, index, options, excluded);
    fill(copy, {});
    engine::writeCopy(document.pdf(), copy.handle(), {});
    result.document = contentOf(copy.fileName());
    return result;
}

} // namespace shrinking
