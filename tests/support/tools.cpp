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
    return run(process, program, arguments);
}

Result run(QProcess &process, const QString &program, const QStringList &arguments,
           const QByteArray &input)
{
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool ended = process.waitForFinished(bound);
    const bool normal = ended && process.exitStatus() == QProcess::NormalExit;
    return {.status = normal ? process.exitCode() : -1,
            .output = process.readAllStandardOutput(),
            .errors = process.readAllStandardError()};
}

QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    const Result result = run(program, arguments);
    if (result.status != 0)
        qFatal("%s %s: %s", qPrintable(program), qPrintable(arguments.join(' ')),
               result.errors.constData());
    return result.output;
}

int pages(const QString &pdf, const QString &password)
{
    const Result counted = run("qpdf", {"--password=" + password, "--show-npages", pdf});
    return counted.status == 0 ? counted.output.trimmed().toInt() : -1;
}

} // namespace tools
