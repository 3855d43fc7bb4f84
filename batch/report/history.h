#pragma once

#include "line.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <functional>
#include <vector>

class QFile;

namespace batch {

/// What a report says has happened.
struct History
{
    QHash<QString, Result> results; ///< by input, the first of each; without output and copy
    QHash<QString, QString> begun;  ///< input and output of starts that nothing followed
    QStringList twice;              ///< inputs with more than one result
    QSet<QString> reasons;          ///< of all failures
};

/// Takes the report's whole lines, from where the file stands, into the history. Gives the length
/// of the last whole line's end, in bytes from the file's begin: what follows was cut off by a
/// kill. Throws Refusal, with the file's name, for a line that isn't a report's, and for a file
/// that does not begin with a run.
qint64 readReport(QFile &file, History &history);

/// The history of a report that is only read. Throws Refusal.
History readReport(const QString &path);

} // namespace batch
