#include "treatment.h"

namespace engine {

namespace {

// The head of a JPEG alone has more.
constexpr std::size_t smallestStream = 200;

// An image that is a JPEG already is only downsampled: coding its samples as a JPEG again would
// lose quality a second time.
Treatment ofSamples(const SurveyedImage &image, const ClassOptions &options)
{
    const ImageFacts &facts = image.facts;
    const bool exact = facts.generic && facts.bits == 8 && !facts.indexed;
    const bool recodes = exact && options.filter != ImageFilter::Flate;
    return options.downsamples(image.dpi) || recodes ? Treatment::Ghostscript : Treatment::None;
}

Treatment ofBilevel(const SurveyedImage &image, const ImageOptions &options)
{
    if (options.monoByGhostscript())
        return Treatment::Ghostscript;
    const bool recodes =
        options.mono.filter == ImageFilter::Jbig2 || options.mono.filter == ImageFilter::Any;
    if (!recodes && !options.mono.downsamples(image.dpi))
        return Treatment::None;
    return image.facts.generic ? Treatment::Here : Treatment::Pixels;
}

Treatment ofSoftMask(const SurveyedImage &image, const ImageOptions &options)
{
    const ImageFacts &facts = image.facts;
    const bool plain = facts.generic && facts.bits == 8 && facts.components == 1 && !facts.indexed;
    return plain && options.gray.downsamples(image.dpi) ? Treatment::Here : Treatment::None;
}

} // namespace

Treatment treatmentOf(const SurveyedImage &image, const ImageOptions &options)
{
    if (!options.any || image.facts.reason != LeftAlone::No || image.facts.bytes < smallestStream)
        return Treatment::None;
    switch (image.facts.kind) {
    case ImageKind::Colour:
        return ofSamples(image, options.colour);
    case ImageKind::Gray:
        return ofSamples(image, options.gray);
    case ImageKind::Bilevel:
        return ofBilevel(image, options);
    case ImageKind::SoftMask:
        break;
    }
    return ofSoftMask(image, options);
}

} // namespace engine
