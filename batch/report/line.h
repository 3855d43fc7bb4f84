#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace batch {

/// Which programs made a copy.
struct Versions
{
    QString corvane;
    QString ghostscript;
};

/// What became of one file.
struct Result
{
    QString input;
    QString output = {}; ///< empty: it never came to an engine
    qint64 before = 0;
    qint64 after = 0; ///< 0 without a copy
    bool succeeded = false;
    QString reason = {}; ///< why there is no copy, in the engine's words where it said some
    std::optional<double> seconds = {}; ///< none: a run that was killed meanwhile can't tell
    QString copy = {}; ///< the engine's line on what became the copy, if there was one
};

/// One line of a report.
struct Line
{
    enum class Event {
        run,     ///< a run begins
        start,   ///< an engine is about to be started; from now on `output` is the input's
        release, ///< `output` is not the input's any more: no copy of it is there
        result,  ///< the input had its turn
    };

    Event event = Event::run;
    Result result; ///< of a start or a release only input and output
};

/// The lines as JSON objects, each with a line break at its end.
QByteArray runLine(const Versions &versions);
QByteArray startLine(const QString &input, const QString &output);
QByteArray releaseLine(const QString &input, const QString &output);
QByteArray resultLine(const Result &result, const Versions &versions);

/// Reads one of them. None for anything else.
std::optional<Line> parseLine(const QByteArray &text);

} // namespace batch
