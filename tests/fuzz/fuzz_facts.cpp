#include "input.h"

#include "engine/tasks/facts.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string lines = textOf(data, size);
    const auto facts = engine::factsOf(lines);
    promise(!facts || engine::linesOf(*facts) == lines);
    return 0;
}
