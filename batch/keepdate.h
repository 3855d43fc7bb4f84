#pragma once

class QString;

namespace batch {

/// Gives the copy the date of the original's last change, to the nanosecond. Where the file system
/// doesn't let it, the copy keeps its own.
void keepDate(const QString &copy, const QString &original);

} // namespace batch
