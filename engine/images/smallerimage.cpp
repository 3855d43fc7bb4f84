#include "smallerimage.h"

#include "bilevel/downsampling.h"
#include "bilevel/jbig2.h"
#include "formats/deflate.h"
#include "formats/graysampling.h"
#include "formats/jpegheader.h"
#include "pdf/streams.h"

#include <algorithm>
#include <cmath>

namespace engine {

namespace {

long long numberOf(QPDFObjectHandle number)
{
    return number.isInteger() ? number.getIntValue() : 0;
}

bool hasDefaultDecode(QPDFObjectHandle dictionary)
{
    QPDFObjectHandle decode = dictionary.getKey("/Decode");
    if (decode.isNull())
        return true;
    if (!decode.isArray())
        return false;
    int position = 0;
    for (auto &item : decode.getArrayAsVector()) {
        if (!item.isNumber() || item.getNumericValue() != position++ % 2)
            return false;
    }
    return true;
}

const char *spaceOf(const ImageFacts &facts)
{
    if (facts.kind == ImageKind::Bilevel || facts.components == 1)
        return "/DeviceGray";
    return facts.components == 3 ? "/DeviceRGB" : "/DeviceCMYK";
}

// Of the samples that the album had, and of none that were converted or masked.
bool isOfItsKind(QPDFObjectHandle dictionary, const ImageFacts &facts)
{
    const long long bits = numberOf(dictionary.getKey("/BitsPerComponent"));
    const long long width = numberOf(dictionary.getKey("/Width"));
    const long long height = numberOf(dictionary.getKey("/Height"));
    return dictionary.getKey("/ColorSpace").isNameAndEquals(spaceOf(facts)) &&
           hasDefaultDecode(dictionary) && !dictionary.hasKey("/Mask") &&
           !dictionary.hasKey("/SMask") && !dictionary.hasKey("/ImageMask") &&
           bits == (facts.kind == ImageKind::Bilevel ? 1 : 8) && width > 0 && height > 0 &&
           width <= facts.width && height <= facts.height;
}

// A JPEG that says another size or number of components than its dictionary is shown as nobody
// meant it.
bool isSoundStream(const SmallerImage &image, const ImageFacts &facts)
{
    QPDFObjectHandle filter = image.filter;
    if (!filter.isNameAndEquals("/DCTDecode"))
        return true;
    const auto header = jpegHeaderOf(image.bytes);
    return header && header->width == image.width && header->height == image.height &&
           header->components == facts.components;
}

std::uint32_t fewer(std::uint32_t edge, double share)
{
    return std::clamp(std::uint32_t(std::lround(edge * share)), 1U, edge);
}

// How many pixels of an edge become one. A page is rarely cut to the pixel: 599.9 dpi are twice
// 300.
std::uint32_t factorOf(double dpi, const ClassOptions &options)
{
    constexpr double slack = 0.02;
    return options.downsamples(dpi) ? std::uint32_t(dpi / options.resolution + slack) : 1;
}

std::optional<Bitmap> sampled(const Bitmap &bitmap, double dpi, const ClassOptions &options)
{
    const std::uint32_t factor = factorOf(dpi, options);
    const std::uint32_t width = (bitmap.width() - 1) / factor + 1;
    const std::uint32_t height = (bitmap.height() - 1) / factor + 1;
    return options.sampling == Sampling::Subsample ? subsampled(bitmap, width, height)
                                                   : downsampled(bitmap, factor, width, height);
}

SmallerImage encoded(const Bitmap &bitmap, const ClassOptions &options)
{
    SmallerImage image{deflated(bitmap.samples()), bitmap.width(), bitmap.height(), 1,
                       QPDFObjectHandle::newName("/FlateDecode")};
    if (options.filter == ImageFilter::Flate)
        return image;
    std::string jbig2 = encodeJbig2(bitmap);
    if (jbig2.empty() || jbig2.size() >= image.bytes.size())
        return image;
    image.bytes = std::move(jbig2);
    image.filter = QPDFObjectHandle::newName("/JBIG2Decode");
    image.jbig2 = true;
    return image;
}

} // namespace

std::optional<SmallerImage> smallerFromAlbum(QPDFObjectHandle written, const ImageFacts &facts)
{
    QPDFObjectHandle dictionary = written.getDict();
    if (!isOfItsKind(dictionary, facts))
        return {};
    SmallerImage image{rawBytesOf(written),
                       std::uint32_t(numberOf(dictionary.getKey("/Width"))),
                       std::uint32_t(numberOf(dictionary.getKey("/Height"))),
                       int(numberOf(dictionary.getKey("/BitsPerComponent"))),
                       dictionary.getKey("/Filter"),
                       dictionary.getKey("/DecodeParms")};
    return isSoundStream(image, facts) ? std::optional(std::move(image)) : std::nullopt;
}

std::optional<Bitmap> pixelsFromAlbum(QPDFObjectHandle written, const ImageFacts &facts)
{
    QPDFObjectHandle dictionary = written.getDict();
    if (!isOfItsKind(dictionary, facts) || facts.kind != ImageKind::Bilevel ||
        numberOf(dictionary.getKey("/Width")) != facts.width ||
        numberOf(dictionary.getKey("/Height")) != facts.height)
        return {};
    const auto samples = decodedBytesOf(written);
    return samples ? Bitmap::ofSamples(facts.width, facts.height, *samples) : std::nullopt;
}

std::optional<SmallerImage> smallerBilevel(const Bitmap &bitmap, double dpi,
                                           const ClassOptions &options)
{
    if (factorOf(dpi, options) < 2)
        return encoded(bitmap, options);
    const auto small = sampled(bitmap, dpi, options);
    return small ? std::optional(encoded(*small, options)) : std::nullopt;
}

std::optional<SmallerImage> smallerSoftMask(QPDFObjectHandle mask, const SurveyedImage &image,
                                            const ClassOptions &options)
{
    const ImageFacts &facts = image.facts;
    auto samples = decodedBytesOf(mask);
    if (!samples || samples->size() < std::size_t(facts.width) * facts.height)
        return {};
    const double share = options.resolution / image.dpi;
    const std::uint32_t width = fewer(facts.width, share);
    const std::uint32_t height = fewer(facts.height, share);
    const GraySamples large{facts.width, facts.height, std::move(*samples)};
    const GraySamples small = options.sampling == Sampling::Subsample
                                  ? subsampled(large, width, height)
                                  : averaged(large, width, height);
    return SmallerImage{deflated(small.samples), width, height, 8,
                        QPDFObjectHandle::newName("/FlateDecode")};
}

} // namespace engine
