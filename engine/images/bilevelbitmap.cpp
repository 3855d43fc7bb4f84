#include "bilevelbitmap.h"

#include "formats/faxdecoder.h"
#include "jbig2decoding.h"
#include "pdf/streams.h"
#include "pdf/walk.h"

#include <algorithm>
#include <limits>

namespace engine {

namespace {

std::uint32_t edgeOf(QPDFObjectHandle number)
{
    const long long value = number.isInteger() ? number.getIntValue() : 0;
    return value > 0 && value <= std::numeric_limits<std::int32_t>::max() ? std::uint32_t(value)
                                                                          : 0;
}

// One filter's parameters lie in the dictionary alone or in an array of one.
QPDFObjectHandle parametersOf(QPDFObjectHandle image)
{
    QPDFObjectHandle parameters = image.getDict().getKey("/DecodeParms");
    if (parameters.isArray())
        parameters = parameters.getArrayNItems() == 1 ? parameters.getArrayItem(0)
                                                      : QPDFObjectHandle::newNull();
    return parameters.isDictionary() ? parameters : QPDFObjectHandle::newDictionary();
}

bool flagOf(QPDFObjectHandle parameters, const char *key)
{
    QPDFObjectHandle flag = parameters.getKey(key);
    return flag.isBool() && flag.getBoolValue();
}

std::optional<Bitmap> ofGroup4(QPDFObjectHandle image)
{
    QPDFObjectHandle parameters = parametersOf(image);
    QPDFObjectHandle kind = parameters.getKey("/K");
    const auto [width, height] = imageSizeOf(image);
    FaxLayout layout;
    if (parameters.hasKey("/Columns"))
        layout.columns = edgeOf(parameters.getKey("/Columns"));
    layout.rows = height;
    layout.blackIs1 = flagOf(parameters, "/BlackIs1");
    layout.encodedByteAlign = flagOf(parameters, "/EncodedByteAlign");
    if (!kind.isInteger() || kind.getIntValue() >= 0 || layout.columns != width)
        return {};
    return decodeGroup4(rawBytesOf(image), layout);
}

std::optional<Bitmap> ofJbig2(QPDFObjectHandle image)
{
    const auto [width, height] = imageSizeOf(image);
    QPDFObjectHandle globals = parametersOf(image).getKey("/JBIG2Globals");
    const auto shared = globals.isStream() ? decodedBytesOf(globals) : std::string();
    return shared ? decodeJbig2(rawBytesOf(image), *shared, width, height) : std::nullopt;
}

std::optional<Bitmap> ofGeneric(QPDFObjectHandle image)
{
    const auto [width, height] = imageSizeOf(image);
    const auto samples = decodedBytesOf(image);
    return samples ? Bitmap::ofSamples(width, height, *samples) : std::nullopt;
}

bool isOneOf(QPDFObjectHandle name, std::initializer_list<const char *> names)
{
    return std::any_of(names.begin(), names.end(),
                       [&](const char *one) { return name.isNameAndEquals(one); });
}

bool hasOneComponent(QPDFObjectHandle colourSpace)
{
    if (colourSpace.isArray() && colourSpace.getArrayNItems() == 1)
        colourSpace = colourSpace.getArrayItem(0);
    if (!colourSpace.isArray() || colourSpace.getArrayNItems() == 0)
        return isOneOf(colourSpace, {"/DeviceGray", "/CalGray"});
    QPDFObjectHandle parameter = colourSpace.getArrayItem(1);
    if (colourSpace.getArrayItem(0).isNameAndEquals("/ICCBased")) {
        QPDFObjectHandle count =
            parameter.isStream() ? parameter.getDict().getKey("/N") : QPDFObjectHandle::newNull();
        return count.isInteger() && count.getIntValue() == 1;
    }
    return isOneOf(colourSpace.getArrayItem(0), {"/Indexed", "/CalGray", "/Separation"});
}

} // namespace

bool isBilevelImage(QPDFObjectHandle stream)
{
    if (!stream.isStream())
        return false;
    QPDFObjectHandle dictionary = stream.getDict();
    if (!dictionary.getKey("/Subtype").isNameAndEquals("/Image"))
        return false;
    if (flagOf(dictionary, "/ImageMask"))
        return true;
    QPDFObjectHandle bits = dictionary.getKey("/BitsPerComponent");
    // A mask of colours speaks of samples, whose meaning may change here.
    return bits.isInteger() && bits.getIntValue() == 1 &&
           hasOneComponent(dictionary.getKey("/ColorSpace")) &&
           !dictionary.getKey("/Mask").isArray();
}

Images bilevelImagesOf(QPDF &document)
{
    Images images;
    for (const auto &object : drawnObjects(document)) {
        if (isBilevelImage(object))
            images.push_back(object);
    }
    return images;
}

std::pair<std::uint32_t, std::uint32_t> imageSizeOf(QPDFObjectHandle image)
{
    QPDFObjectHandle dictionary = image.getDict();
    return {edgeOf(dictionary.getKey("/Width")), edgeOf(dictionary.getKey("/Height"))};
}

std::optional<Bitmap> bitmapOf(QPDFObjectHandle image)
{
    const auto [width, height] = imageSizeOf(image);
    if (width == 0 || height == 0)
        return {};
    const auto filters = filtersOf(image);
    if (filters == std::vector<std::string>{"/CCITTFaxDecode"})
        return ofGroup4(image);
    if (filters == std::vector<std::string>{"/JBIG2Decode"})
        return ofJbig2(image);
    return ofGeneric(image);
}

} // namespace engine
