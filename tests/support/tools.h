#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/// Programs that are not under test: what they say is what a test holds on to.
namespace tools {

struct Result
{
    int status = -1; ///< exit status; -1: it could not be started, crashed, or had no end
    QByteArray output;
    QByteArray errors;
};

/// Runs a program to its end.
Result run(const QString &program, const QStringList &arguments,
           const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment(),
           const QString &workingFolder = {});

/// What a program prints. The test ends here if the program fails.
QString outputOf(const QString &program, const QStringList &arguments);

} // namespace tools
