#include "memoryfile.h"

#include "batch/enginesettings.h"
#include "batch/refusal.h"
#include "core/engineswitches.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const MemoryFile file(data, size);
    try {
        const batch::EngineSettings settings = batch::engineSettings(file.path(), {});
        promise(settings.switches.startsWith(core::baseSwitches()));
        promise(settings.markFile.isEmpty());
    } catch (const batch::Refusal &) {
        return 0;
    }
    return 0;
}
