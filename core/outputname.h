#pragma once

#include <QString>

#include <functional>

namespace core {

/// Tells whether a name is in use in the file system.
using IsTaken = std::function<bool(const QString &path)>;

/// Path for the compressed copy of `input` in `folder`: the input's base name (up to its first dot)
/// with ".pdf", and as many "0" before the ".pdf" as it takes to find a name that isn't taken.
/// A folder is used as typed; a relative one stays relative.
QString freeOutputPath(const QString &folder, const QString &input, const IsTaken &isTaken);

/// True if anything has that name, be it a symbolic link that leads nowhere: writing through such a
/// link would make a file in a place that nobody chose.
bool fileSystemEntryExists(const QString &path);

} // namespace core
