#include "input.h"

#include "engine/xmp/xmpclaim.h"
#include "engine/xmp/xmptrimming.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string packet = textOf(data, size);
    const auto claim = engine::claimInPacket(packet);
    for (const auto history : {engine::History::Kept, engine::History::Dropped}) {
        const auto trimmed = engine::trimmedPacket(packet, history);
        if (!trimmed)
            continue;
        promise(trimmed->size() < packet.size());
        promise(engine::claimInPacket(*trimmed) == claim);
        promise(!engine::trimmedPacket(*trimmed, history));
    }
    return 0;
}
