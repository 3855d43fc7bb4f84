#include "tools.h"

#include "bound.h"

#include <QProcess>

namespace tools {

Result run(const QString &program, const QStringList &arguments,
           const QProcessEnvironment &environment, const QString &workingFolder)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(workingFolder);
    process.start(program, arguments);
    const bool ended = process.waitForFinished(bound);
    const bool normal = ended && process.exitStatus() == QProcess::NormalExit;
    return {.status = normal ? process.exitCode() : -1,
            .output = process.readAllStandardOutput(),
            .errors = process.readAllStandardError()};
}

QString outputOf(const QString &program, const QStringList &arguments)
{
    const Result result = run(program, arguments);
    if (result.status != 0)
        qFatal("%s %s: %s", qPrintable(program), qPrintable(arguments.join(' ')),
               result.errors.constData());
    return QString::fromUtf8(result.output);
}

} // namespace tools
