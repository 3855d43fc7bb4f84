#include "input.h"

#include "engine/fontprograms/unusedtables.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string program = textOf(data, size);
    for (const auto text : {engine::TextToCome::None, engine::TextToCome::OfFields}) {
        const auto without = engine::withoutUnusedTables(program, text);
        promise(!without || without->size() < program.size());
        promise(!without || !engine::withoutUnusedTables(*without, text));
    }
    return 0;
}
