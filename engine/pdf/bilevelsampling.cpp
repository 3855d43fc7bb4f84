#include "bilevelsampling.h"

#include "../downsampling.h"
#include "bilevelbitmap.h"
#include "deflate.h"
#include "streams.h"

#include <algorithm>

namespace engine {

namespace {

// As many originals are compared with one image of the copy; Ghostscript keeps their order.
constexpr std::size_t lookAhead = 4;

std::uint32_t factorBetween(QPDFObjectHandle original, QPDFObjectHandle image)
{
    const auto [width, height] = edgesOf(original);
    const auto [smallWidth, smallHeight] = edgesOf(image);
    const std::uint32_t factor = factorOf(width, smallWidth);
    return factor == factorOf(height, smallHeight) ? factor : 0;
}

std::optional<Bitmap> resampled(const Bitmap &image, const Bitmap &original, std::uint32_t factor)
{
    const Subsample relation = subsampleOf(image, original, factor);
    if (relation == Subsample::No)
        return {};
    auto result = downsampled(original, factor, image.width(), image.height());
    if (result && relation == Subsample::Opposite)
        result->invert();
    return result;
}

void replace(QPDFObjectHandle image, const Bitmap &bitmap)
{
    image.replaceStreamData(deflated(bitmap.samples()), QPDFObjectHandle::newName("/FlateDecode"),
                            QPDFObjectHandle::newNull());
}

// True if the image was made of this original.
bool resample(QPDFObjectHandle image, QPDFObjectHandle original)
{
    const std::uint32_t factor = factorBetween(original, image);
    const auto bitmap = factor > 0 ? bitmapOf(image) : std::nullopt;
    const auto own = bitmap ? bitmapOf(original) : std::nullopt;
    const auto better = own ? resampled(*bitmap, *own, factor) : std::nullopt;
    if (better)
        replace(image, *better);
    return better.has_value();
}

} // namespace

void resampleBilevelImages(QPDF &copy, QPDF &original, bool anyCompression)
{
    Images originals = bilevelImagesOf(original);
    for (const QPDFObjectHandle &image : bilevelImagesOf(copy)) {
        if (!anyCompression && filtersOf(image) != std::vector<std::string>{"/FlateDecode"})
            continue;
        std::size_t looks = lookAhead;
        const auto own =
            std::find_if(originals.begin(), originals.end(), [&](const auto &candidate) {
                return looks > 0 && factorBetween(candidate, image) > 0 && looks-- > 0 &&
                       resample(image, candidate);
            });
        if (own != originals.end())
            originals.erase(own);
    }
}

} // namespace engine
