#pragma once

#include "support/bound.h"
#include "support/processes.h"
#include "support/tools.h"

#include <QJsonObject>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>

/// How a run of corvane-batch ended, and what it said.
struct BatchEnd
{
    int status = -1; ///< 128 and more: it was ended by that signal, less 128
    QString output;
    QString errors;
};

/// A run that has begun. It is over with the object.
class BatchRun
{
public:
    BatchRun(const QString &program, const QStringList &arguments);

    void signal(int number) const;
    /// Waits until it has said something on standard error.
    void awaitErrors();
    /// Waits so many milliseconds at most; tells whether it ended.
    bool endsWithin(int milliseconds);
    BatchEnd wait();

private:
    QProcess m_process;
};

BatchEnd runBatch(const QString &program, const QStringList &arguments);

/// The lines of a report, or of --json, as objects.
QList<QJsonObject> jsonLines(const QByteArray &text);

/// Of those, the ones of one event.
QList<QJsonObject> linesOf(const QList<QJsonObject> &lines, const QString &event);

/// What `key` says in each of them.
QStringList column(const QList<QJsonObject> &lines, const QString &key);
