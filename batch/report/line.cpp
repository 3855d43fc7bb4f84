#include "line.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

struct EventName
{
    Line::Event event;
    QLatin1String name;
};

constexpr EventName eventNames[] = {
    {Line::Event::run, "run"_L1},
    {Line::Event::start, "start"_L1},
    {Line::Event::release, "release"_L1},
    {Line::Event::result, "result"_L1},
};

QByteArray text(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QJsonObject names(QLatin1String event, const QString &input, const QString &output)
{
    return {{u"event"_s, event}, {u"input"_s, input}, {u"output"_s, output}};
}

QJsonObject versionsObject(const Versions &versions)
{
    return {{u"corvane"_s, versions.corvane}, {u"ghostscript"_s, versions.ghostscript}};
}

Result resultOf(const QJsonObject &object)
{
    const QJsonValue seconds = object.value("seconds"_L1);
    return {
        .input = object.value("input"_L1).toString(),
        .output = object.value("output"_L1).toString(),
        .before = object.value("before"_L1).toInteger(),
        .after = object.value("after"_L1).toInteger(),
        .succeeded = object.value("verdict"_L1) == "Succeed"_L1,
        .reason = object.value("reason"_L1).toString(),
        .seconds = seconds.isDouble() ? std::optional(seconds.toDouble()) : std::nullopt,
        .copy = object.value("copy"_L1).toString(),
    };
}

} // namespace

QByteArray runLine(const Versions &versions)
{
    return text({{u"event"_s, u"run"_s},
                 {u"program"_s, u"corvane-batch"_s},
                 {u"versions"_s, versionsObject(versions)}});
}

QByteArray startLine(const QString &input, const QString &output)
{
    return text(names("start"_L1, input, output));
}

QByteArray releaseLine(const QString &input, const QString &output)
{
    return text(names("release"_L1, input, output));
}

QByteArray resultLine(const Result &result, const Versions &versions)
{
    QJsonObject object = names("result"_L1, result.input, result.output);
    object.insert("before"_L1, result.before);
    object.insert("after"_L1, result.after);
    object.insert("verdict"_L1, result.succeeded ? u"Succeed"_s : u"Failed"_s);
    if (!result.reason.isEmpty())
        object.insert("reason"_L1, result.reason);
    if (result.seconds)
        object.insert("seconds"_L1, *result.seconds);
    if (!result.copy.isEmpty())
        object.insert("copy"_L1, result.copy);
    object.insert("versions"_L1, versionsObject(versions));
    return text(object);
}

std::optional<Line> parseLine(const QByteArray &text)
{
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    const QString name = object.value("event"_L1).toString();
    const auto *const event = std::ranges::find(eventNames, name, &EventName::name);
    if (event == std::end(eventNames))
        return std::nullopt;
    if (event->event == Line::Event::run)
        return object.value("program"_L1) == "corvane-batch"_L1 ? std::optional(Line())
                                                                : std::nullopt;
    const Result result = resultOf(object);
    if (result.input.isEmpty() || result.before < 0 || result.after < 0)
        return std::nullopt;
    return Line{.event = event->event, .result = result};
}

} // namespace batch
