#pragma once

#include <string>
#include <vector>

namespace engine {

enum class Sampling { None, Subsample, Average, Bicubic };
enum class ImageFilter { Any, Jpeg, Flate, RunLength, Jbig2, Fax };

/// What a line asks of the images of one class.
struct ClassOptions
{
    Sampling sampling = Sampling::None;
    double resolution = 0; ///< in dpi
    ImageFilter filter = ImageFilter::Any;

    /// Whether an image of this resolution (in dpi) is to be made smaller: one and a half times as
    /// much as is asked for, Ghostscript's own threshold.
    [[nodiscard]] bool downsamples(double dpi) const;
};

struct ImageOptions
{
    bool any = false; ///< false: the line says nothing about images, which stay as they are
    ClassOptions colour;
    ClassOptions gray;
    ClassOptions mono;

    /// Whether Ghostscript writes the bilevel images: what is asked for is what it can do itself.
    /// Else it only takes them off, without loss.
    [[nodiscard]] bool monoByGhostscript() const;
};

/// What the words of the window's line ask. Gray images are downsampled where there is a kind and a
/// resolution, and nothing forbids it.
ImageOptions imageOptionsOf(const std::vector<std::string> &words);

/// The words that Ghostscript gets for the album, from those of the window's line: as many as stay,
/// those about bilevel images as they have to be, and what keeps every image an object.
std::vector<std::string> albumWords(const std::vector<std::string> &words);

} // namespace engine
