#include "program.h"

#include <QJsonDocument>

BatchRun::BatchRun(const QString &program, const QStringList &arguments)
{
    m_process.start(program, arguments);
    if (!m_process.waitForStarted(bound))
        qFatal("%s can't be started", qPrintable(program));
}

void BatchRun::signal(int number) const
{
    sendSignal(m_process.processId(), number);
}

void BatchRun::awaitErrors()
{
    m_process.setReadChannel(QProcess::StandardError);
    if (!m_process.waitForReadyRead(bound))
        qFatal("corvane-batch says nothing");
}

bool BatchRun::endsWithin(int milliseconds)
{
    return m_process.waitForFinished(milliseconds);
}

BatchEnd BatchRun::wait()
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(bound))
        qFatal("corvane-batch does not end");
    const int ended = m_process.exitStatus() == QProcess::CrashExit ? 128 : 0;
    return {.status = m_process.exitCode() + ended,
            .output = QString::fromUtf8(m_process.readAllStandardOutput()),
            .errors = QString::fromUtf8(m_process.readAllStandardError())};
}

BatchEnd runBatch(const QString &program, const QStringList &arguments)
{
    return BatchRun(program, arguments).wait();
}

QList<QJsonObject> jsonLines(const QByteArray &text)
{
    QList<QJsonObject> objects;
    for (const QByteArray &line : text.split('\n')) {
        const QJsonDocument document = QJsonDocument::fromJson(line);
        if (document.isObject())
            objects.append(document.object());
        else if (!line.isEmpty())
            qFatal("no JSON: %s", line.constData());
    }
    return objects;
}

QList<QJsonObject> linesOf(const QList<QJsonObject> &lines, const QString &event)
{
    QList<QJsonObject> found;
    for (const QJsonObject &line : lines) {
        if (line.value("event") == event)
            found.append(line);
    }
    return found;
}

QStringList column(const QList<QJsonObject> &lines, const QString &key)
{
    QStringList values;
    for (const QJsonObject &line : lines)
        values.append(line.value(key).toVariant().toString());
    return values;
}
