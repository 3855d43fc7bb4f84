#include "input.h"

#include "engine/xmp/xmp.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text = textOf(data, size);
    const std::string date = engine::xmpDate(text);
    promise(date.empty() || date.size() == 20 || date.size() == 25);
    const std::string writable = engine::writableInXml(text);
    promise(engine::writableInXml(writable) == writable);
    engine::isUtf8BeyondAscii(text);
    return 0;
}
