#include "input.h"

#include "engine/pdf/touched.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string lines = textOf(data, size);
    const auto parts = engine::partsOf(lines);
    promise(!parts || engine::linesOf(*parts) == lines);
    return 0;
}
