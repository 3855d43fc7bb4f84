#pragma once

#include "batch/enginesettings.h"

#include <QString>
#include <QStringList>

class QProcess;

namespace batch {

/// The engine that lies beside this program.
QString enginePath();

/// Why a process could not be started, without the system call that Qt 6.4 puts before it.
QString startError(const QProcess &process);

/// The version of the Ghostscript that it runs. Throws Refusal if there is no engine, or if it
/// finds no Ghostscript.
QString ghostscriptVersion(const QString &engine);

/// The window's command line as a list of words, in which every path arrives as it is.
QStringList engineArguments(const EngineSettings &settings, const QString &output,
                            const QString &input);

} // namespace batch
