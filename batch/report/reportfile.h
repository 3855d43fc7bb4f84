#pragma once

#include "batch/refusal.h"
#include "history.h"

#include <QFile>
#include <QString>

namespace batch {

/// The report on the disk. It belongs to one run at a time.
class ReportFile
{
public:
    /// Opens the file. A new one if `resume` is off, where nothing may lie under that name; with
    /// it, what is there is read into the history and the last line, if cut off, is removed.
    /// Throws Refusal.
    ReportFile(const QString &path, bool resume);

    [[nodiscard]] const History &history() const { return m_history; }

    /// Appends lines; false, with the reason in errorText(), if they couldn't be written.
    bool append(const QByteArray &lines);

    /// The same, and they are on the disk before it returns.
    bool appendSafely(const QByteArray &lines);

    [[nodiscard]] const QString &errorText() const { return m_errorText; }

private:
    void open(bool resume);
    void lock();
    qint64 readAll();
    [[nodiscard]] Refusal unusable() const;
    [[nodiscard]] QString textFor(const QString &reason) const;

    QFile m_file;
    History m_history;
    QString m_errorText;
};

} // namespace batch
