#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

class QProcess;

/// Programs run to their end: those under test, and those that a test holds on to.
namespace tools {

struct Result
{
    int status = -1; ///< exit status; -1: it could not be started, crashed, or had no end
    QByteArray output;
    QByteArray errors;
};

Result run(const QString &program, const QStringList &arguments,
           const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment(),
           const QString &workingFolder = {});

/// The same with a process that has been set up already; `input` is all that it can read.
Result run(QProcess &process, const QString &program, const QStringList &arguments,
           const QByteArray &input = {});

/// What a program prints. The test ends here if the program fails.
QByteArray outputOf(const QString &program, const QStringList &arguments);

/// How many pages a PDF file has, as qpdf counts them; -1 if it can't read the file.
int pages(const QString &pdf, const QString &password = {});

} // namespace tools
