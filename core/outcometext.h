#pragma once

#include <QString>
#include <QtGlobal>

#include <optional>

namespace core {

/// What the file system says of an original and its copy. All sizes are in bytes.
struct Outcome
{
    /// Of the original; none if it is gone or can't be read.
    std::optional<qint64> original;
    /// Of the copy; none if there is no copy.
    std::optional<qint64> copy;
    /// The largest copy that counts as none, if the caller judges by sizes as judge() does.
    std::optional<qint64> threshold;
};

/// The size of the file at `path` in bytes; none if there is no such file.
std::optional<qint64> sizeOfFile(const QString &path);

/// What the copy saved, in one line, or why there is none to speak of; translated, in plain text.
/// What was gained or lost is never rounded to nothing or to everything.
QString outcomeText(const Outcome &outcome);

} // namespace core
