#include "input.h"

#include "engine/proof/findings.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string lines = textOf(data, size);
    const auto findings = engine::findingsOf(lines);
    promise(!findings || engine::linesOf(*findings) == lines);
    return 0;
}
