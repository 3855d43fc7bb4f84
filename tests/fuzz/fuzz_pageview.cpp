#include "input.h"

#include "engine/pdf/pageview.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string lines = textOf(data, size);
    const auto views = engine::viewsOf(lines);
    promise(!views || engine::linesOf(*views) == lines);
    return 0;
}
