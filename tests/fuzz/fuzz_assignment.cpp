#include "memoryfile.h"

#include "batch/enginesettings.h"
#include "batch/refusal.h"

#include <QProcess>
#include <QStringList>

namespace {

QStringList words(const QStringList &assignments)
{
    static const MemoryFile defaults(nullptr, 0);
    return QProcess::splitCommand(batch::engineSettings(defaults.path(), assignments).switches);
}

} // namespace

// What --set takes reaches the engine as one word more, or in the place of those that were there.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const qsizetype count = words({}).size();
    try {
        const QStringList changed = words({QString::fromStdString(textOf(data, size))});
        promise(changed.size() <= count + 1);
        for (const QString &word : changed)
            promise(word.startsWith(u'-'));
    } catch (const batch::Refusal &) {
        return 0;
    }
    return 0;
}
