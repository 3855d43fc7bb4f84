#include "pdf.h"

#include <QProcess>

namespace {

constexpr int bound = 60000; // ms

} // namespace

int pagesOf(const QString &file)
{
    QProcess reader;
    reader.start("qpdf", {"--show-npages", file});
    if (!reader.waitForFinished(bound) || reader.exitCode() != 0)
        return -1;
    return reader.readAllStandardOutput().trimmed().toInt();
}

QString told(const QString &tool, const QStringList &arguments)
{
    QProcess process;
    process.start(tool, arguments);
    if (!process.waitForFinished(bound) || process.exitCode() != 0)
        qFatal("%s failed: %s", qPrintable(tool), process.readAllStandardError().constData());
    return QString::fromUtf8(process.readAllStandardOutput());
}
