#pragma once

#include "formats/bitmap.h"

#include <optional>
#include <qpdf/QPDF.hh>
#include <vector>

namespace engine {

/// Whether a stream is an image of one bit per pixel, or a stencil mask.
bool isBilevelImage(QPDFObjectHandle stream);

using Images = std::vector<QPDFObjectHandle>;

/// The bilevel images that a document shows, in the order of its pages, each once.
Images bilevelImagesOf(QPDF &document);

/// Width and height of an image as its dictionary states them; 0 for one that makes no sense.
std::pair<std::uint32_t, std::uint32_t> imageSizeOf(QPDFObjectHandle image);

/// A bilevel image's samples, whatever their compression; nothing if it is one that can't be taken
/// off here, or is damaged.
std::optional<Bitmap> bitmapOf(QPDFObjectHandle image);

} // namespace engine
