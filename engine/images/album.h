#pragma once

#include "treatment.h"

#include <optional>
#include <string>

namespace engine {

struct AlbumPage
{
    int object = 0; ///< number of the image that it shows; 0: it could not be read
    double dpi = 0; ///< at which it shows it
};

/// What the album's pages show, in their order.
using AlbumIndex = std::vector<AlbumPage>;

/// Writes a document that shows every image for Ghostscript to make smaller, or to take off, on a
/// page of its own, as large as it is shown at most. There its colour space is the device's gray,
/// RGB or CMYK, so that no sample is converted, and it has no mask. Without any image the file
/// stays empty. Throws a std::exception if it can't be written.
AlbumIndex writeAlbum(QPDF &document, const std::vector<SurveyedImage> &images,
                      const ImageOptions &options, int file);

/// One line a page.
std::string linesOf(const AlbumIndex &index);

/// The index again; nothing for a text that linesOf() does not write.
std::optional<AlbumIndex> albumIndexOf(const std::string &lines);

} // namespace engine
