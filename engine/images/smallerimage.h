#pragma once

#include "bilevel/bitmap.h"
#include "treatment.h"

#include <optional>
#include <string>

namespace engine {

/// What takes the place of an image's samples.
struct SmallerImage
{
    std::string bytes;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    int bits = 1;
    QPDFObjectHandle filter;
    QPDFObjectHandle parameters = QPDFObjectHandle::newNull();
    bool jbig2 = false;
};

/// An image as Ghostscript wrote it for the one that its page of the album showed; nothing if it is
/// not of the same kind.
std::optional<SmallerImage> smallerFromAlbum(QPDFObjectHandle written, const ImageFacts &facts);

/// The pixels of a bilevel image that Ghostscript took off; nothing if they are not the same in
/// number.
std::optional<Bitmap> pixelsFromAlbum(QPDFObjectHandle written, const ImageFacts &facts);

/// A bilevel image as the options want it, downsampled or not, in what coding is smallest.
std::optional<SmallerImage> smallerBilevel(const Bitmap &bitmap, double dpi,
                                           const ClassOptions &options);

/// A soft mask as the options for gray images want it, without loss but for its downsampling.
std::optional<SmallerImage> smallerSoftMask(QPDFObjectHandle mask, const SurveyedImage &image,
                                            const ClassOptions &options);

} // namespace engine
