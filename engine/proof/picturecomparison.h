#pragma once

#include "picture.h"

#include <set>
#include <vector>

namespace engine {

/// Pixels of a picture; right and bottom are past the last.
struct PixelRectangle
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool operator==(const PixelRectangle &) const = default;
};

/// Where an image that was made smaller is shown on a picture.
struct PlacedImage
{
    int object; ///< its number in the original
    PixelRectangle where;
};

/// How far, in levels of 256, an image that was sampled and coded anew may be from its original.
struct Tolerance
{
    /// Of a pixel, beyond the lightest and the darkest of the nine around it and half of what lies
    /// between these: edges move by fractions of a pixel, and fine patterns blur.
    int pixel;
    int block; ///< of the mean of 4 by 4 pixels
    int area;  ///< of the mean of 16 by 16 pixels: traces of JPEG are light here and dark there
};

/// Three pixels of an image for each of the picture, sampled by Ghostscript 10.00's three kinds and
/// coded as JPEG: the worst of scans, photographs, halftones and small print were 75, 36 and 9. A
/// line of 10 points that is missing is 93 away at 24 dpi, 148 at 50 dpi.
constexpr Tolerance soundImage = {.pixel = 80, .block = 40, .area = 10};

struct PictureDifference
{
    /// The images in whose places the difference lies.
    std::set<int> images;

    /// There is one where no image was made smaller, or the pictures are not of one size.
    bool elsewhere = false;

    [[nodiscard]] bool isNone() const { return images.empty() && !elsewhere; }
};

/// Outside the images' places the pictures have to be the same, inside alike in every small block.
PictureDifference differenceOf(const Picture &copy, const Picture &original,
                               const std::vector<PlacedImage> &images,
                               const Tolerance &tolerance = soundImage);

} // namespace engine
