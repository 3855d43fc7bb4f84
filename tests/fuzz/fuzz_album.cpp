#include "input.h"

#include "engine/images/album.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string lines = textOf(data, size);
    const auto index = engine::albumIndexOf(lines);
    promise(!index || engine::linesOf(*index) == lines);
    return 0;
}
