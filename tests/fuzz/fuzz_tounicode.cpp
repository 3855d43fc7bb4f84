#include "input.h"

#include "engine/formats/tounicode.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    engine::lettersOfCodes(textOf(data, size));
    return 0;
}
