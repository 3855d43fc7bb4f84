#pragma once

#include "bitmap.h"

namespace engine {

/// What a PDF stream with the filter CCITTFaxDecode says of itself.
struct FaxLayout
{
    std::uint32_t columns = 1728;
    std::uint32_t rows = 0; ///< known: an image's height, where the stream doesn't say
    bool blackIs1 = false;
    bool encodedByteAlign = false;
};

/// The bitmap of a stream in CCITT Group 4 (ITU-T T.6; K is negative). Nothing if it is damaged, in
/// the uncompressed mode, ends before its last row, has no columns, or would be larger than a
/// bitmap can be. What follows the last row is passed over. Safe for hostile data: takes time and
/// memory for the data and the bitmap, and no more.
std::optional<Bitmap> decodeGroup4(std::string_view data, const FaxLayout &layout);

} // namespace engine
