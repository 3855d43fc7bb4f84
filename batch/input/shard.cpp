#include "shard.h"

#include "batch/refusal.h"

#include <QProcessEnvironment>
#include <QStringList>

#include <optional>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

// Numbers are ints, so that sums and differences of two of them fit into 64 bits.
std::optional<qint64> numberOf(const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber ? std::optional<qint64>(number) : std::nullopt;
}

// An array's numbers may begin anywhere and leave steps out, such as 10-40:10.
std::optional<qint64> slurmPart(const QProcessEnvironment &environment)
{
    const auto value = [&environment](const char *name, const char *otherwise) {
        return numberOf(environment.value("SLURM_ARRAY_TASK_"_L1 + QLatin1String(name),
                                          QString::fromLatin1(otherwise)));
    };
    const auto id = value("ID", "");
    const auto first = value("MIN", "1");
    const auto step = value("STEP", "1");
    if (!id || !first || !step || *step < 1)
        return std::nullopt;
    return (*id - *first) / *step + 1;
}

std::optional<qint64> indexedPart(const QProcessEnvironment &environment)
{
    const auto index = numberOf(environment.value(u"JOB_COMPLETION_INDEX"_s));
    return index ? std::optional(*index + 1) : std::nullopt;
}

std::optional<qint64> partOfTask(const QProcessEnvironment &environment)
{
    const auto part = slurmPart(environment);
    return part ? part : indexedPart(environment);
}

std::optional<qint64> countOfTasks(const QProcessEnvironment &environment)
{
    return numberOf(environment.value(u"SLURM_ARRAY_TASK_COUNT"_s));
}

} // namespace

Shard shardOf(const QString &text, const QProcessEnvironment &environment)
{
    const QStringList pieces = text.split(u'/');
    const bool fromTask = pieces.constFirst() == "auto"_L1;
    const auto part = fromTask ? partOfTask(environment) : numberOf(pieces.constFirst());
    if (fromTask && !part)
        throw Refusal(u"--shard auto finds neither SLURM_ARRAY_TASK_ID nor JOB_COMPLETION_INDEX"_s);
    if (fromTask && pieces.size() == 1 && !countOfTasks(environment))
        throw Refusal(u"--shard auto is not told the number of parts: give --shard auto/N"_s);
    const auto count =
        fromTask && pieces.size() == 1 ? countOfTasks(environment) : numberOf(pieces.value(1));
    if (!part || !count || pieces.size() > 2 || *part < 1 || *part > *count)
        throw Refusal(u"--shard takes I/N with I from 1 to N, or auto, not '%1'"_s.arg(text));
    return {.part = static_cast<int>(*part), .count = static_cast<int>(*count)};
}

} // namespace batch
