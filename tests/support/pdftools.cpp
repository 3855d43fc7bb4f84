#include "pdftools.h"

#include "tools.h"

#include <QRegularExpression>
#include <QTemporaryDir>

namespace tools {

namespace {

// The rows of a table under two lines of headings, split into words.
QList<QStringList> table(const QByteArray &output)
{
    QList<QStringList> rows;
    for (const QString &line : QString::fromUtf8(output).split('\n', Qt::SkipEmptyParts).mid(2))
        rows.append(line.simplified().split(' '));
    return rows;
}

QString filterOf(const QString &pdf, const QString &object)
{
    const auto dictionary = QString::fromUtf8(outputOf("qpdf", {"--show-object=" + object, pdf}));
    static const QRegularExpression filter("/Filter /(\\w+)");
    return filter.match(dictionary).captured(1);
}

} // namespace

QList<Image> images(const QString &pdf)
{
    QList<Image> list;
    for (const QStringList &row : table(outputOf("pdfimages", {"-list", pdf}))) {
        // page num type width height color comp bpc enc interp object generation x-ppi ...
        list.append({row[3].toInt(), row[6].toInt(), row[7].toInt(), row[12].toInt(),
                     filterOf(pdf, row[10])});
    }
    return list;
}

QImage pixels(const QString &pdf, int image)
{
    const QTemporaryDir folder;
    outputOf("pdfimages", {"-png", pdf, folder.filePath("image")});
    return QImage(folder.filePath(QString("image-%1.png").arg(image, 3, 10, QChar('0'))));
}

QList<Font> fonts(const QString &pdf)
{
    QList<Font> list;
    for (const QStringList &row : table(outputOf("pdffonts", {pdf}))) {
        // name, type of one or more words, encoding, then emb sub uni object generation
        list.append({row.constFirst(), row[row.size() - 5] == "yes", row[row.size() - 4] == "yes"});
    }
    return list;
}

QMap<QString, QString> information(const QString &pdf)
{
    QMap<QString, QString> entries;
    const auto shown = QString::fromUtf8(outputOf("pdfinfo", {pdf}));
    for (const QString &line : shown.split('\n', Qt::SkipEmptyParts))
        entries.insert(line.section(':', 0, 0), line.section(':', 1).mid(1).trimmed());
    return entries;
}

Permissions permissions(const QString &pdf, const QString &userPassword)
{
    const QByteArray shown =
        outputOf("qpdf", {"--show-encryption", "--password=" + userPassword, pdf});
    const auto allows = [&](const char *what) {
        return shown.contains(QByteArray(what) + ": allowed");
    };
    return {allows("print low resolution"), allows("modify other"),
            allows("extract for any purpose"), allows("modify annotations")};
}

// qpdf --requires-password ends with 0 if another password is needed, 2 without encryption and 3 if
// the given one will do.
bool asksForPassword(const QString &pdf)
{
    return run("qpdf", {"--requires-password", pdf}).status == 0;
}

bool opensWith(const QString &pdf, const QString &password)
{
    return run("qpdf", {"--requires-password", "--password=" + password, pdf}).status == 3;
}

} // namespace tools
