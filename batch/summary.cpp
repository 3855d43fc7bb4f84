#include "summary.h"

#include "output.h"
#include "report/history.h"
#include "tally.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

void add(const History &history, History &all)
{
    all.twice.append(history.twice);
    for (const Result &result : history.results) {
        if (all.results.contains(result.input))
            all.twice.append(result.input);
        else
            all.results.insert(result.input, result);
    }
    all.begun.insert(history.begun);
}

// Another report may say how it went on.
QStringList unfinished(const History &history)
{
    QStringList inputs;
    for (auto begun = history.begun.begin(); begun != history.begun.end(); ++begun) {
        if (!history.results.contains(begun.key()))
            inputs.append(begun.key());
    }
    return inputs;
}

QList<Result> sortedResults(const History &history)
{
    QList<Result> results = history.results.values();
    std::ranges::sort(results, {}, &Result::input);
    return results;
}

void complainOf(QStringList inputs, const QString &what)
{
    inputs.sort();
    for (const QString &input : inputs)
        complain(input + ": "_L1 + what);
}

} // namespace

ExitCode summarise(const Options &options)
{
    History all;
    for (const QString &path : options.paths)
        add(readReport(path), all);
    Tally tally;
    for (const Result &result : sortedResults(all))
        tally.take(result);
    const QStringList begun = unfinished(all);
    write(options.json ? tally.line(begun.size()) : tally.text(begun.size()).toLocal8Bit() + '\n');
    for (const Failure &failure : tally.failures())
        complain(failure.text());
    complainOf(begun, u"begun and not done"_s);
    complainOf(all.twice, u"done more than once"_s);
    const bool isGood = tally.failed() == 0 && begun.isEmpty() && all.twice.isEmpty();
    return isGood ? ExitCode::allDone : ExitCode::someFailed;
}

} // namespace batch
