#include "input.h"

#include "batch/input/shard.h"
#include "batch/refusal.h"

#include <QProcessEnvironment>
#include <QStringList>

// The first line is what is given for --shard, the others are variables of the environment.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QStringList lines = QString::fromStdString(textOf(data, size)).split(u'\n');
    QProcessEnvironment environment;
    for (const QString &variable : lines.mid(1))
        environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    try {
        const batch::Shard shard = batch::shardOf(lines.constFirst(), environment);
        promise(1 <= shard.part && shard.part <= shard.count);
        promise(shard.has(shard.part - 1));
    } catch (const batch::Refusal &) {
        return 0;
    }
    return 0;
}
