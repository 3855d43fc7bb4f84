#include "input.h"

#include "engine/formats/jpegheader.h"
#include "engine/formats/jpegrecoding.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string jpeg = textOf(data, size);
    const auto before = engine::jpegHeaderOf(jpeg);
    // Time is spent on what has as many pixels as it says, else.
    if (before && before->width * std::uint64_t(before->height) > 1'000'000)
        return 0;
    const auto recoded = engine::recodedJpeg(jpeg);
    if (!recoded)
        return 0;
    promise(recoded->size() < size);
    const auto after = engine::jpegHeaderOf(*recoded);
    promise(before && after && before->width == after->width && before->height == after->height);
    promise(before->components == after->components);
    promise(before->adobeTransform == after->adobeTransform);
    return 0;
}
