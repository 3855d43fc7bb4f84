#pragma once

#include "album.h"

#include <set>

namespace engine {

struct TakenImages
{
    std::vector<TouchedPart> touched;
    bool jbig2 = false; ///< an image has become one that takes version 1.4
};

/// Puts into the document, which is as it was surveyed, every image that is smaller than its own:
/// from what Ghostscript made of the album (null: there is none), or made here. Only samples,
/// their number, bits and coding change, and the colour space of indexed ones to what an index
/// stood for; what is shown often stays one object. Objects with the excluded numbers stay.
/// Throws a std::exception if the pages can't be found.
TakenImages takeImages(QPDF &document, QPDF *album, const AlbumIndex &index,
                       const ImageOptions &options, const std::set<int> &excluded);

} // namespace engine
