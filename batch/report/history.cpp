#include "history.h"

#include "batch/refusal.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

// A long report's results are all kept: without what nobody asks for, and each reason only once.
Result kept(Result result, QSet<QString> &reasons)
{
    result.output.clear();
    result.copy.clear();
    result.reason = *reasons.insert(result.reason);
    return result;
}

void take(const Line &line, History &history)
{
    const Result &result = line.result;
    switch (line.event) {
    case Line::Event::run:
        break;
    case Line::Event::start:
        history.begun.insert(result.input, result.output);
        break;
    case Line::Event::release:
        history.begun.remove(result.input);
        break;
    case Line::Event::result:
        history.begun.remove(result.input);
        if (history.results.contains(result.input))
            history.twice.append(result.input);
        else
            history.results.insert(result.input, kept(result, history.reasons));
        break;
    }
}

Refusal noReport(const QFile &file, int lineNumber)
{
    return Refusal(u"%1 is not a report: see its line %2"_s.arg(file.fileName()).arg(lineNumber));
}

} // namespace

qint64 readReport(QFile &file, History &history)
{
    qint64 end = file.pos();
    int number = 0;
    for (QByteArray text = file.readLine(); text.endsWith('\n'); text = file.readLine()) {
        ++number;
        const auto line = parseLine(text);
        if (!line || (number == 1 && line->event != Line::Event::run))
            throw noReport(file, number);
        take(*line, history);
        end = file.pos();
    }
    if (number == 0 && file.size() > 0)
        throw noReport(file, 1);
    return end;
}

History readReport(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Refusal(u"the report %1 can't be read: %2"_s.arg(path, file.errorString()));
    History history;
    readReport(file, history);
    return history;
}

} // namespace batch
