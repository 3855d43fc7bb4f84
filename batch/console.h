#pragma once

#include "options.h"
#include "tally.h"
#include "work/scheduler.h"

#include <QElapsedTimer>

namespace batch {

/// Says what happens: a line that changes, on a terminal; JSON Lines, if asked for; totals and
/// failures at the end. A pipe gets nothing else.
class Console : public Listener
{
public:
    Console(const Options &options, const Versions &versions, qsizetype fileCount);
    ~Console() override;
    Q_DISABLE_COPY_MOVE(Console)

    /// What an earlier run has done counts, too.
    void hadEarlier(const Result &result);

    void started(const QString &input, const QString &output) override;
    void had(const Result &result) override;
    void sayStopping();
    void sayEnd();

    [[nodiscard]] qsizetype left() const { return m_fileCount - m_tally.files(); }
    [[nodiscard]] const Tally &tally() const { return m_tally; }

private:
    void showProgress();
    void clearProgress();

    const Options &m_options;
    const Versions &m_versions;
    qsizetype m_fileCount;
    bool m_onTerminal;
    Tally m_tally;
    qsizetype m_earlier = 0;
    QElapsedTimer m_timer;
};

/// What the progress line says after so many seconds: "12 of 200 files, 3.4 MB saved, 2.1 files/s,
/// 1:29 left". `fresh` of the files were done in that time, the others by an earlier run.
QString progressText(const Tally &tally, qsizetype fresh, qsizetype left, double seconds);

} // namespace batch
