#pragma once

#include <QByteArray>

class QString;

namespace batch {

/// To standard output, at once.
void write(const QByteArray &text);

/// To standard error, as it is.
void writeError(const QByteArray &text);

/// One line to standard error, behind the program's name. Control characters become "?".
void complain(const QString &text);

} // namespace batch
