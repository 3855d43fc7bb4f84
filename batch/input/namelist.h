#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace batch {

/// Calls `take` with each name of a file (or of standard input, "-") whose names end with NUL;
/// empty ones are left out. Throws Refusal if it can't be read, or has lines instead.
void forEachName(const QString &listFile, const std::function<void(const QByteArray &)> &take);

} // namespace batch
