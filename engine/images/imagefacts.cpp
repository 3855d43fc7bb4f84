#include "imagefacts.h"

#include "formats/jpegheader.h"
#include "pdf/streams.h"
#include "samples.h"

#include <algorithm>

namespace engine {

namespace {

// Larger than any image; two of them still fit into 64 bits as a product.
constexpr long long largestEdge = 1 << 24;

std::uint32_t edgeOf(QPDFObjectHandle number)
{
    const long long value = number.isInteger() ? number.getIntValue() : 0;
    return value > 0 && value <= largestEdge ? std::uint32_t(value) : 0;
}

bool isTrue(QPDFObjectHandle flag)
{
    return flag.isBool() && flag.getBoolValue();
}

bool isOneOf(const std::string &name, std::initializer_list<const char *> names)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

int componentsOfProfile(QPDFObjectHandle profile)
{
    QPDFObjectHandle count =
        profile.isStream() ? profile.getDict().getKey("/N") : QPDFObjectHandle::newNull();
    const long long components = count.isInteger() ? count.getIntValue() : 0;
    QPDFObjectHandle alternate =
        profile.isStream() ? profile.getDict().getKey("/Alternate") : QPDFObjectHandle::newNull();
    const bool isLab = alternate.isArray() && alternate.getArrayNItems() > 0 &&
                       alternate.getArrayItem(0).isNameAndEquals("/Lab");
    return isLab ? 0 : isOneOf(std::to_string(components), {"1", "3", "4"}) ? int(components) : 0;
}

// 0: samples of this space can't be mixed, or nobody knows it.
int componentsOf(QPDFObjectHandle space)
{
    if (space.isArray() && space.getArrayNItems() == 1)
        space = space.getArrayItem(0);
    const std::string name =
        space.isName() ? space.getName()
        : space.isArray() && space.getArrayNItems() > 0 && space.getArrayItem(0).isName()
            ? space.getArrayItem(0).getName()
            : "";
    if (isOneOf(name, {"/DeviceGray", "/CalGray", "/Separation"}))
        return 1;
    if (isOneOf(name, {"/DeviceRGB", "/CalRGB"}))
        return 3;
    if (name == "/DeviceCMYK")
        return 4;
    return name == "/ICCBased" ? componentsOfProfile(space.getArrayItem(1)) : 0;
}

LeftAlone readSpace(QPDFObjectHandle space, ImageFacts &facts)
{
    QPDFObjectHandle base = baseOf(space);
    facts.indexed = !base.isNull();
    facts.components = componentsOf(facts.indexed ? base : space);
    // A Separation's tints are mixed as such, an index's colours are not.
    const bool isTint = base.isArray() && base.getArrayItem(0).isNameAndEquals("/Separation");
    return facts.components == 0 || isTint ? LeftAlone::ColourSpace : LeftAlone::No;
}

bool hasColourTransform(QPDFObjectHandle parameters)
{
    if (parameters.isArray() && parameters.getArrayNItems() > 0)
        parameters = parameters.getArrayItem(parameters.getArrayNItems() - 1);
    return parameters.isDictionary() && parameters.hasKey("/ColorTransform");
}

LeftAlone reasonOfJpeg(QPDFObjectHandle image, const ImageFacts &facts)
{
    const auto bytes = bytesForLastFilter(image);
    const auto header = bytes ? jpegHeaderOf(*bytes) : std::nullopt;
    const bool fits = header && header->width == facts.width && header->height == facts.height &&
                      header->components == facts.components && header->bits == 8;
    if (!fits)
        return LeftAlone::Damaged;
    return hasColourTransform(image.getDict().getKey("/DecodeParms")) ? LeftAlone::ColourTransform
                                                                      : LeftAlone::No;
}

LeftAlone reasonOfFilters(QPDFObjectHandle image, ImageFacts &facts)
{
    const auto filters = filtersOf(image);
    facts.generic = isGeneric(filters);
    if (facts.generic)
        return LeftAlone::No;
    if (!isGeneric({filters.begin(), filters.end() - 1}))
        return LeftAlone::ChainedFilters;
    if (isOneOf(filters.back(), {"/CCITTFaxDecode", "/JBIG2Decode"}))
        return facts.bits == 1 && facts.components == 1 ? LeftAlone::No : LeftAlone::Filter;
    facts.jpeg = filters.back() == "/DCTDecode";
    if (!facts.jpeg || facts.bits != 8 || facts.indexed)
        return LeftAlone::Filter;
    return reasonOfJpeg(image, facts);
}

LeftAlone reasonOfEntries(QPDFObjectHandle dictionary, const ImageFacts &facts)
{
    QPDFObjectHandle inside = dictionary.getKey("/SMaskInData");
    // A soft mask is what counts where there are both.
    if (dictionary.getKey("/Mask").isArray() && !dictionary.getKey("/SMask").isStream())
        return LeftAlone::ColourKey;
    if (inside.isInteger() && inside.getIntValue() != 0)
        return LeftAlone::SoftMaskInside;
    if (dictionary.hasKey("/Alternates"))
        return LeftAlone::Alternates;
    QPDFObjectHandle mask = dictionary.getKey("/SMask");
    if (dictionary.hasKey("/Matte") || (mask.isStream() && mask.getDict().hasKey("/Matte")))
        return LeftAlone::Matte;
    return facts.indexed && dictionary.hasKey("/Decode") && facts.bits > 1 ? LeftAlone::Decode
                                                                           : LeftAlone::No;
}

LeftAlone readSamples(QPDFObjectHandle image, ImageFacts &facts)
{
    QPDFObjectHandle dictionary = image.getDict();
    facts.width = edgeOf(dictionary.getKey("/Width"));
    facts.height = edgeOf(dictionary.getKey("/Height"));
    if (facts.width == 0 || facts.height == 0)
        return LeftAlone::Damaged;
    if (isTrue(dictionary.getKey("/ImageMask")))
        return LeftAlone::No;
    if (isOneOf(filtersOf(image).empty() ? "" : filtersOf(image).back(), {"/JPXDecode"}))
        return LeftAlone::Jpeg2000;
    QPDFObjectHandle bits = dictionary.getKey("/BitsPerComponent");
    facts.bits = bits.isInteger() ? int(std::clamp(bits.getIntValue(), 0LL, 99LL)) : 0;
    if (!isOneOf(std::to_string(facts.bits), {"1", "2", "4", "8", "16"}))
        return LeftAlone::Damaged;
    return readSpace(dictionary.getKey("/ColorSpace"), facts);
}

ImageKind kindOf(const ImageFacts &facts, bool isSoftMask)
{
    if (isSoftMask)
        return ImageKind::SoftMask;
    if (facts.bits == 1 && (facts.components == 1 || facts.indexed))
        return ImageKind::Bilevel;
    return facts.components == 1 ? ImageKind::Gray : ImageKind::Colour;
}

} // namespace

QPDFObjectHandle baseOf(QPDFObjectHandle space)
{
    const bool isIndexed = space.isArray() && space.getArrayNItems() == 4 &&
                           space.getArrayItem(0).isNameAndEquals("/Indexed");
    return isIndexed ? space.getArrayItem(1) : QPDFObjectHandle::newNull();
}

ImageFacts factsOf(QPDFObjectHandle image, bool isSoftMask)
{
    ImageFacts facts;
    QPDFObjectHandle length = image.getDict().getKey("/Length");
    facts.bytes = length.isInteger() ? std::size_t(std::max(length.getIntValue(), 0LL)) : 0;
    facts.reason = readSamples(image, facts);
    if (facts.reason == LeftAlone::No)
        facts.reason = reasonOfFilters(image, facts);
    if (facts.reason == LeftAlone::No)
        facts.reason = reasonOfEntries(image.getDict(), facts);
    facts.kind = kindOf(facts, isSoftMask);
    return facts;
}

} // namespace engine
