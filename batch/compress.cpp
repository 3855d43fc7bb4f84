#include "compress.h"

#include "console.h"
#include "dryrun.h"
#include "keepdate.h"
#include "output.h"
#include "report/recovery.h"
#include "report/reportfile.h"
#include "work/endsignals.h"
#include "work/engine.h"
#include "work/scheduler.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <csignal>
#include <optional>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

// A folder that is made would hide a slip of the pen in its name.
QString usableFolder(const QString &path)
{
    const QFileInfo folder(path);
    if (!folder.isDir())
        throw Refusal(u"no output folder "_s + path, ExitCode::cannotWork);
    if (!folder.isWritable() || !folder.isExecutable())
        throw Refusal(u"the output folder %1 can't be written to"_s.arg(path),
                      ExitCode::cannotWork);
    return QDir::cleanPath(folder.absoluteFilePath());
}

InputFiles chosenFiles(const Options &options)
{
    return inputFiles({.paths = options.paths,
                       .listFile = options.listFile,
                       .outputFolder = options.outputFolder,
                       .shard = options.shard});
}

// A single engine may use all processors for its children.
std::vector<Processors> sharesFor(const Options &options)
{
    const Processors usable = usableProcessors();
    const int jobs = options.jobs.value_or(defaultJobs(usable.size(), processorQuota()));
    return jobs == 1 ? std::vector<Processors>(1) : shares(usable, jobs);
}

Plan planFor(const Options &options)
{
    const QString engine = enginePath();
    const QString outputFolder = usableFolder(options.outputFolder);
    return {
        .engine = engine,
        .settings = engineSettings(options.settings, options.assignments),
        .outputFolder = outputFolder,
        .files = chosenFiles(options),
        .shares = sharesFor(options),
        .keepDates = options.keepDates,
        .versions = {.corvane = QStringLiteral(CORVANE_VERSION),
                     .ghostscript = ghostscriptVersion(engine)},
    };
}

// Every start that nothing followed gets its end here, before a new one may take the same name.
QByteArray recoveredLines(const History &history, const Plan &plan, QHash<QString, Result> &results)
{
    QByteArray lines;
    for (auto begun = history.begun.begin(); begun != history.begun.end(); ++begun) {
        const auto result = recover(begun.value(), begun.key());
        lines +=
            result ? resultLine(*result, plan.versions) : releaseLine(begun.key(), begun.value());
        if (!result)
            continue;
        results.insert(begun.key(), *result);
        if (plan.keepDates)
            keepDate(result->output, result->input);
    }
    return lines;
}

QHash<QString, Result> beginReport(ReportFile &report, const Plan &plan)
{
    QHash<QString, Result> results = report.history().results;
    const QByteArray recovered = recoveredLines(report.history(), plan, results);
    if (!report.appendSafely(runLine(plan.versions) + recovered))
        throw Refusal(report.errorText(), ExitCode::cannotWork);
    return results;
}

void leaveOutDone(const QHash<QString, Result> &results, InputFiles &files, Console &console)
{
    std::erase_if(files, [&](const InputFile &file) {
        const auto done = results.find(file.path);
        if (done == results.end())
            return false;
        console.hadEarlier(*done);
        return true;
    });
}

void runAll(Scheduler &scheduler)
{
    EndSignals endSignals;
    QObject::connect(&endSignals, &EndSignals::came, &scheduler, &Scheduler::stop);
    QObject::connect(&scheduler, &Scheduler::done, qApp, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    QMetaObject::invokeMethod(&scheduler, &Scheduler::start, Qt::QueuedConnection);
    QCoreApplication::exec();
}

ExitCode endOf(const Scheduler &scheduler, const Console &console)
{
    if (!scheduler.problem().isEmpty()) {
        complain(scheduler.problem());
        return ExitCode::cannotWork;
    }
    if (console.left() > 0)
        return EndSignals::first() == SIGINT ? ExitCode::interrupted : ExitCode::terminated;
    return console.tally().failed() > 0 ? ExitCode::someFailed : ExitCode::allDone;
}

} // namespace

ExitCode compress(const Options &options)
{
    Plan plan = planFor(options);
    if (options.dryRun)
        return dryRun(options, plan);
    std::optional<ReportFile> report;
    Console console(options, plan.versions, static_cast<qsizetype>(plan.files.size()));
    if (options.report)
        report.emplace(*options.report, options.resume);
    if (report)
        leaveOutDone(beginReport(*report, plan), plan.files, console);
    Scheduler scheduler(plan, report ? &*report : nullptr, console);
    QObject::connect(&scheduler, &Scheduler::stopping, [&console] { console.sayStopping(); });
    runAll(scheduler);
    console.sayEnd();
    return endOf(scheduler, console);
}

} // namespace batch
