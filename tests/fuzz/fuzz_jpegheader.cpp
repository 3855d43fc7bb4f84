#include "input.h"

#include "engine/formats/jpegheader.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    engine::jpegHeaderOf({reinterpret_cast<const char *>(data), size});
    return 0;
}
