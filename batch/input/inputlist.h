#pragma once

#include "shard.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace batch {

/// One file to compress.
struct InputFile
{
    QString path;             ///< absolute, without "." and ".."
    qsizetype rootLength = 0; ///< of the folder operand that it was found in, with its slash; or 0
    QString problem = {};     ///< why it can't even be tried, mostly empty

    /// Where the copy belongs below the output folder: "" or "some/folder".
    [[nodiscard]] QString folder() const;
};

using InputFiles = std::vector<InputFile>;

struct InputChoice
{
    QStringList paths;               ///< each has to exist
    std::optional<QString> listFile; ///< NUL-separated names that need not; "-": standard input
    QString outputFolder;            ///< left out where it lies below a folder
    Shard shard;
};

/// The files of one part: those that are named, and below a folder all "*.pdf", in any case.
/// Folders are read in the order of the names' bytes, links to folders are not followed, and a path
/// that is met twice counts once. Throws Refusal for a path that isn't there, a list that can't be
/// read, and an output folder that is a folder to compress.
InputFiles inputFiles(const InputChoice &choice);

} // namespace batch
