#include "input.h"

#include "engine/xmp/xmpedit.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string packet = textOf(data, size);
    const engine::DescriptionChanges changes = {
        {"/Title", "A & B"}, {"/Author", ""}, {"/Keywords", "one, two"}};
    const auto changed = engine::changedXmp(packet, changes);
    promise(changed.has_value() == engine::withoutPdfaClaim(packet).has_value());
    promise(!changed || engine::changedXmp(*changed, changes).has_value());
    return 0;
}
