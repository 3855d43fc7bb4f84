#include "bilevelsampling.h"

#include "bilevelbitmap.h"
#include "formats/deflate.h"
#include "formats/downsampling.h"
#include "pdf/streams.h"

namespace engine {

namespace {

// As many originals are compared with one image of the copy; Ghostscript keeps their order.
constexpr std::size_t lookAhead = 4;

std::uint32_t factorBetween(QPDFObjectHandle original, QPDFObjectHandle image)
{
    const auto [width, height] = imageSizeOf(original);
    const auto [smallWidth, smallHeight] = imageSizeOf(image);
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

// The original that serves is taken out.
void resampleFrom(Images &originals, const QPDFObjectHandle &image)
{
    std::size_t looks = 0;
    for (auto own = originals.begin(); own != originals.end() && looks < lookAhead; ++own) {
        if (factorBetween(*own, image) == 0)
            continue;
        ++looks;
        if (resample(image, *own)) {
            originals.erase(own);
            return;
        }
    }
}

} // namespace

void resampleBilevelImages(QPDF &copy, QPDF &original, bool anyCompression)
{
    Images originals = bilevelImagesOf(original);
    for (const QPDFObjectHandle &image : bilevelImagesOf(copy)) {
        if (anyCompression || filtersOf(image) == std::vector<std::string>{"/FlateDecode"})
            resampleFrom(originals, image);
    }
}

} // namespace engine
