#include "droppedfiles.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace core {

DroppedFiles droppedFiles(const QList<QUrl> &urls)
{
    DroppedFiles dropped;
    for (const QUrl &url : urls) {
        const QFileInfo file(url.toLocalFile());
        if (file.filePath().isEmpty())
            break;
        dropped.endedByFolder = file.isDir();
        if (dropped.endedByFolder)
            break;
        if (file.suffix().toLower() == "pdf"_L1)
            dropped.pdfs.append(file);
    }
    return dropped;
}

} // namespace core
