#include "scheduler.h"

#include "batch/keepdate.h"
#include "batch/report/recovery.h"
#include "core/outcometext.h"
#include "core/outputname.h"
#include "endsignals.h"
#include "engine.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

QString failureReason(const EngineEnd &end)
{
    if (end.status == 0)
        return core::outcomeText({}); // of a copy that isn't there
    return end.reason.isEmpty() ? u"the engine ended with status %1"_s.arg(end.status) : end.reason;
}

Result resultOf(const QString &output, const QString &input, const EngineEnd &end)
{
    const bool succeeded = end.status == 0 && isWholeCopy(output);
    return {
        .input = input,
        .output = output,
        .before = QFileInfo(input).size(),
        .after = succeeded ? QFileInfo(output).size() : 0,
        .succeeded = succeeded,
        .reason = succeeded ? QString() : failureReason(end),
        .seconds = end.seconds,
        .copy = succeeded ? end.report : QString(),
    };
}

} // namespace

QString Plan::folderOf(const InputFile &file) const
{
    const QString folder = file.folder();
    return folder.isEmpty() ? outputFolder : outputFolder + u'/' + folder;
}

Scheduler::Scheduler(const Plan &plan, ReportFile *report, Listener &listener)
    : m_plan(plan)
    , m_report(report)
    , m_listener(listener)
    , m_jobs(plan.shares.size())
{
}

void Scheduler::start()
{
    fill();
}

void Scheduler::stop()
{
    if (!m_stopping) {
        m_stopping = true;
        emit stopping();
        fill();
        return;
    }
    for (const Job &job : m_jobs) {
        if (job.process)
            job.process->endEarly();
    }
}

void Scheduler::fill()
{
    for (Job &job : m_jobs) {
        while (!job.process && mayStart()) {
            job = {.file = &m_plan.files[m_next++]};
            begin(job);
        }
    }
    if (std::ranges::all_of(m_jobs, [](const Job &job) { return !job.process; }))
        emit done();
}

// The loop may hear of a signal later than of the engine that ended meanwhile.
bool Scheduler::mayStart() const
{
    return !m_stopping && EndSignals::first() == 0 && m_next < m_plan.files.size();
}

void Scheduler::begin(Job &job)
{
    const InputFile &file = *job.file;
    if (!file.problem.isEmpty())
        return record({.input = file.path, .reason = file.problem});
    if (!QDir().mkpath(m_plan.folderOf(file))) {
        return record({.input = file.path,
                       .before = QFileInfo(file.path).size(),
                       .reason = u"the folder %1 can't be made"_s.arg(m_plan.folderOf(file))});
    }
    startEngine(job);
}

void Scheduler::startEngine(Job &job)
{
    job.output =
        core::freeOutputPath(m_plan.folderOf(*job.file), job.file->path,
                             [this, &job](const QString &path) { return isTaken(job, path); });
    log(startLine(job.file->path, job.output), true);
    if (!m_problem.isEmpty())
        return;
    m_listener.started(job.file->path, job.output);
    const auto place = static_cast<std::size_t>(&job - m_jobs.data());
    job.process = new EngineProcess(m_plan.engine,
                                    engineArguments(m_plan.settings, job.output, job.file->path),
                                    m_plan.shares[place], this);
    connect(job.process, &EngineProcess::ended, this,
            [this, &job](const EngineEnd &engineEnd) { end(job, engineEnd); });
}

// An engine makes its output some moments after its start: the names that engines at work have been
// given are not in the file system yet.
bool Scheduler::isTaken(const Job &job, const QString &path) const
{
    const auto writesIt = [&path](const Job &other) {
        return other.process && other.output == path;
    };
    return job.refused.contains(path) || std::ranges::any_of(m_jobs, writesIt) ||
           core::fileSystemEntryExists(path);
}

void Scheduler::end(Job &job, const EngineEnd &end)
{
    job.process = nullptr;
    if (end.crashed)
        removePlaceholder(job.output);
    const bool wasInterrupted = EndSignals::first() != 0 && end.status > 128;
    if (end.status == EngineEnd::nameTaken || wasInterrupted)
        leaveUndone(job);
    else
        record(resultOf(job.output, job.file->path, end));
    if (end.status == EngineEnd::nameTaken && !m_stopping && EndSignals::first() == 0) {
        job.refused.insert(job.output);
        startEngine(job);
    }
    fill();
}

void Scheduler::leaveUndone(const Job &job)
{
    log(releaseLine(job.file->path, job.output));
}

void Scheduler::record(const Result &result)
{
    if (result.succeeded && m_plan.keepDates)
        keepDate(result.output, result.input);
    log(resultLine(result, m_plan.versions));
    m_listener.had(result);
}

// Without its report a run could not be gone on with: it starts no more.
void Scheduler::log(const QByteArray &line, bool safely)
{
    if (!m_report || !m_problem.isEmpty())
        return;
    if (!(safely ? m_report->appendSafely(line) : m_report->append(line))) {
        m_problem = m_report->errorText();
        m_stopping = true;
    }
}

} // namespace batch
