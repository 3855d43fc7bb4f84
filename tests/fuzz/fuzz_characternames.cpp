#include "input.h"

#include "engine/fontprograms/characternames.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    for (const char32_t character : engine::charactersOf(textOf(data, size)))
        promise(character <= 0x10ffff);
    return 0;
}
