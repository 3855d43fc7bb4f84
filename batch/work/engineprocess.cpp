#include "engineprocess.h"

#include "engine.h"
#include "system.h"

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace batch {

EngineProcess::EngineProcess(const QString &engine, const QStringList &arguments,
                             const Processors &processors, QObject *parent)
    : QObject(parent)
{
    connectProcess();
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setChildProcessModifier(
        [parent = getpid(), processors] { system::prepareEngine(parent, processors); });
    m_timer.start();
    m_process.start(engine, arguments, QIODevice::ReadOnly);
}

void EngineProcess::connectProcess()
{
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &EngineProcess::readOutput);
    connect(&m_process, &QProcess::readyReadStandardError, this, &EngineProcess::readErrors);
    connect(&m_process, &QProcess::finished, this, &EngineProcess::finish);
    // Queued: it may come while start() is still at work.
    connect(&m_process, &QProcess::errorOccurred, this, &EngineProcess::fail, Qt::QueuedConnection);
}

void EngineProcess::endEarly()
{
    m_process.terminate();
}

void EngineProcess::readOutput()
{
    m_output.take(m_process.readAllStandardOutput());
}

void EngineProcess::readErrors()
{
    m_errors.take(m_process.readAllStandardError());
}

void EngineProcess::finish(int status, QProcess::ExitStatus how)
{
    readOutput();
    readErrors();
    const bool crashed = how == QProcess::CrashExit;
    tell({
        .status = crashed ? 128 + status : status,
        .crashed = crashed,
        .reason = crashed ? u"the engine was ended by signal %1"_s.arg(status) : m_errors.text(),
        .report = m_output.ownText(),
    });
}

void EngineProcess::fail(QProcess::ProcessError error)
{
    if (error == QProcess::FailedToStart)
        tell({.status = 1, .reason = u"the engine can't be started: "_s + startError(m_process)});
}

void EngineProcess::tell(EngineEnd end)
{
    end.seconds = static_cast<double>(m_timer.elapsed()) / 1000;
    emit ended(end);
    deleteLater();
}

} // namespace batch
