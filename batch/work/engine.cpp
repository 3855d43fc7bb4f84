#include "engine.h"

#include "batch/refusal.h"

#include <QCoreApplication>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace batch {

QString enginePath()
{
    return QCoreApplication::applicationDirPath() + "/corvgs"_L1;
}

QString startError(const QProcess &process)
{
    return process.errorString().remove("execvp: "_L1);
}

QString ghostscriptVersion(const QString &engine)
{
    QProcess process;
    process.start(engine, {u"--version"_s}, QIODevice::ReadOnly);
    if (!process.waitForStarted(-1))
        throw Refusal(u"no engine %1: %2"_s.arg(engine, startError(process)), ExitCode::cannotWork);
    process.waitForFinished(-1);
    QString said = QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed();
    if (process.exitCode() != 0 || said.isEmpty()) {
        throw Refusal(u"the engine can't work: "_s +
                          QString::fromLocal8Bit(process.readAllStandardError()).trimmed(),
                      ExitCode::cannotWork);
    }
    return said;
}

QStringList engineArguments(const EngineSettings &settings, const QString &output,
                            const QString &input)
{
    QStringList arguments = QProcess::splitCommand(settings.switches);
    arguments << "-sOutputFile="_L1 + output << u"-f"_s << input;
    if (!settings.markFile.isEmpty())
        arguments << settings.markFile;
    return arguments;
}

} // namespace batch
