#include "outputname.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace core {

namespace {

QString pathInFolder(const QString &folder, const QString &nameSource, QLatin1String ending)
{
    return folder + u'/' + QFileInfo(nameSource).baseName() + ending;
}

} // namespace

QString freeOutputPath(const QString &folder, const QString &input, const IsTaken &isTaken)
{
    QString path = pathInFolder(folder, input, ".pdf"_L1);
    while (isTaken(path))
        path = pathInFolder(folder, path, "0.pdf"_L1);
    return path;
}

bool fileSystemEntryExists(const QString &path)
{
    const QFileInfo entry(path);
    return entry.exists() || entry.isSymLink();
}

} // namespace core
