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

    /// Whether Ghostscript samples and codes the bilevel images, because it can do what is asked.
    /// Otherwise it only decodes them, and the engine samples and codes their pixels.
    [[nodiscard]] bool monoByGhostscript() const;
};

/// What the words of the window's line ask. Gray images are downsampled where there is a kind and a
/// resolution, and nothing forbids it.
ImageOptions imageOptionsOf(const std::vector<std::string> &words);

/// The same about bilevel images, and nothing about others, which stay.
ImageOptions bilevelAlone(ImageOptions options);

/// The words with which Ghostscript rewrites a whole document in which the bilevel images already
/// are as they have to be.
std::vector<std::string> rewritingWords(const std::vector<std::string> &words);

/// The words that Ghostscript gets for the album: those of the window's line, except that bilevel
/// images may be left to the engine, that gray images are downsampled, and that no image becomes
/// part of a page's content.
std::vector<std::string> albumWords(const std::vector<std::string> &words);

} // namespace engine
