#include "input.h"

#include "engine/formats/faxdecoder.h"

// The first four bytes say how wide and high the image is.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 4)
        return 0;
    const auto number = [data](int place) {
        return std::uint32_t(data[place]) << 4U | std::uint32_t(data[place + 1]) >> 4U;
    };
    engine::FaxLayout layout;
    layout.columns = number(0);
    layout.rows = number(2);
    layout.blackIs1 = (data[1] & 1U) != 0;
    layout.encodedByteAlign = (data[1] & 2U) != 0;
    const auto bitmap =
        engine::decodeGroup4({reinterpret_cast<const char *>(data) + 4, size - 4}, layout);
    promise(!bitmap || (bitmap->width() == layout.columns && bitmap->height() == layout.rows));
    return 0;
}
