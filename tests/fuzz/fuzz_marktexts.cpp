#include "input.h"

#include "engine/formats/marktexts.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string mark = textOf(data, size);
    for (const auto &[key, text] : engine::markTexts(mark)) {
        promise(key.starts_with('/'));
        promise(text.size() <= mark.size());
    }
    return 0;
}
