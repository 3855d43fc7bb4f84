#include "memoryfile.h"

#include "batch/input/namelist.h"
#include "batch/refusal.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const MemoryFile list(data, size);
    std::string names;
    try {
        batch::forEachName(list.path(), [&names](const QByteArray &name) {
            promise(!name.isEmpty() && !name.contains('\0'));
            names += name.toStdString();
        });
    } catch (const batch::Refusal &) {
        return 0;
    }
    std::string expected = textOf(data, size);
    std::erase(expected, '\0');
    promise(names == expected);
    return 0;
}
