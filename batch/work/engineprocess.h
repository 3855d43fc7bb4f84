#pragma once

#include "lastline.h"
#include "processors.h"

#include <QElapsedTimer>
#include <QObject>
#include <QProcess>
#include <QStringList>

namespace batch {

/// How an engine ended.
struct EngineEnd
{
    /// Of corvgs: the name of its copy was taken.
    static constexpr int nameTaken = 73;

    int status = 0;       ///< its exit status; 128 and the signal's number if a signal ended it
    bool crashed = false; ///< it could not clean up
    QString reason = {};  ///< its last line of its own on standard error, or what else is known
    QString report = {};  ///< its last line of its own on standard output
    double seconds = 0;
};

/// One run of corvgs, which ends with this process.
class EngineProcess : public QObject
{
    Q_OBJECT

public:
    EngineProcess(const QString &engine, const QStringList &arguments, const Processors &processors,
                  QObject *parent);

    /// Asks it to end. It removes what it has begun.
    void endEarly();

signals:
    /// Once. The object deletes itself afterwards.
    void ended(const batch::EngineEnd &end);

private:
    void connectProcess();
    void readOutput();
    void readErrors();
    void finish(int status, QProcess::ExitStatus how);
    void fail(QProcess::ProcessError error);
    void tell(EngineEnd end);

    QProcess m_process;
    QElapsedTimer m_timer;
    LastLine m_output;
    LastLine m_errors;
};

} // namespace batch
