#pragma once

#include "batch/enginesettings.h"
#include "batch/input/inputlist.h"
#include "batch/report/line.h"
#include "batch/report/reportfile.h"
#include "engineprocess.h"
#include "processors.h"

#include <QObject>
#include <QSet>
#include <QString>

#include <vector>

namespace batch {

/// All that a run is told.
struct Plan
{
    QString engine;
    EngineSettings settings;
    QString outputFolder; ///< absolute
    InputFiles files;
    std::vector<Processors> shares; ///< one for each engine side by side; empty ones: any processor
    bool keepDates = false;
    Versions versions;

    /// Where the file's copy belongs, absolute.
    [[nodiscard]] QString folderOf(const InputFile &file) const;
};

/// Hears what happens to the files.
class Listener
{
public:
    Listener() = default;
    virtual ~Listener() = default;
    Q_DISABLE_COPY_MOVE(Listener)

    virtual void started(const QString &input, const QString &output) = 0;
    virtual void had(const Result &result) = 0;
};

/// Runs engines side by side until all files had their turn.
class Scheduler : public QObject
{
    Q_OBJECT

public:
    /// The report may be null; all that is handed over outlives the scheduler.
    Scheduler(const Plan &plan, ReportFile *report, Listener &listener);

    void start();

    /// The first time, no more engines are started; the second time, those at work are ended.
    void stop();

    /// Why it stopped by itself: the report could not be written. Mostly empty.
    [[nodiscard]] const QString &problem() const { return m_problem; }

signals:
    /// No more engines are started, though some are at work.
    void stopping();

    /// No engine is at work any more, and none will be.
    void done();

private:
    // One of the engines side by side, and the file it has in hand.
    struct Job
    {
        const InputFile *file = nullptr;
        QString output = {};
        QSet<QString> refused = {}; // names that others took
        EngineProcess *process = nullptr;
    };

    void fill();
    [[nodiscard]] bool mayStart() const;
    void begin(Job &job);
    void startEngine(Job &job);
    void end(Job &job, const EngineEnd &end);
    void leaveUndone(const Job &job);
    void record(const Result &result);
    void log(const QByteArray &line, bool safely = false);
    [[nodiscard]] bool isTaken(const Job &job, const QString &path) const;

    const Plan &m_plan;
    ReportFile *m_report;
    Listener &m_listener;
    std::vector<Job> m_jobs;
    std::size_t m_next = 0;
    bool m_stopping = false;
    QString m_problem;
};

} // namespace batch
