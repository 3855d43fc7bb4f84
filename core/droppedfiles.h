#pragma once

#include <QFileInfo>
#include <QList>

class QUrl;

namespace core {

/// What a drop brings into the file list.
struct DroppedFiles
{
    QFileInfoList pdfs; ///< in the order of the drop
    bool endedByFolder = false;
};

/// The files named "*.pdf", in any case, up to the first URL that isn't a local file or is a
/// folder. Files need not exist.
DroppedFiles droppedFiles(const QList<QUrl> &urls);

} // namespace core
