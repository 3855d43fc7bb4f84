#include "bilevelimages.h"

#include "pdf/streams.h"
#include "pdf/walk.h"
#include "smallerimage.h"

namespace engine {

namespace {

bool isRecodable(const ImageFacts &facts)
{
    return facts.reason == LeftAlone::No && facts.kind == ImageKind::Bilevel && facts.generic;
}

void recode(QPDFObjectHandle image)
{
    const ImageFacts facts = factsOf(image, false);
    const auto samples = isRecodable(facts) ? decodedBytesOf(image) : std::nullopt;
    const auto bitmap =
        samples ? Bitmap::ofSamples(facts.width, facts.height, *samples) : std::nullopt;
    if (!bitmap)
        return;
    ClassOptions options;
    options.filter = ImageFilter::Jbig2;
    const auto recoded = smallerBilevel(*bitmap, 0, options);
    if (recoded && recoded->bytes.size() < rawBytesOf(image).size())
        image.replaceStreamData(recoded->bytes, recoded->filter, recoded->parameters);
}

} // namespace

void recodeBilevelImages(QPDF &document)
{
    for (auto &object : drawnObjects(document)) {
        if (object.getDict().getKey("/Subtype").isNameAndEquals("/Image"))
            recode(object);
    }
}

} // namespace engine
