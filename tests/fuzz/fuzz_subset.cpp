#include "input.h"

#include "engine/fontprograms/subset.h"

// The first two bytes are glyphs that stay.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2)
        return 0;
    const engine::Needs needs = {.cmap = data[0] % 2 == 0, .names = data[1] % 2 == 0};
    engine::subsetOf(textOf(data + 2, size - 2), {data[0], data[1]}, needs);
    return 0;
}
