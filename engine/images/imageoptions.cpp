#include "imageoptions.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace engine {

namespace {

using Words = std::vector<std::string>;

// Ghostscript's default.
constexpr double threshold = 1.5;

// The names of a class's switches, each with its equals sign.
struct Switches
{
    std::string downsample, type, resolution, autoFilter, filter;

    explicit Switches(const std::string &name)
        : downsample("-dDownsample" + name + "Images=")
        , type("-d" + name + "ImageDownsampleType=")
        , resolution("-d" + name + "ImageResolution=")
        , autoFilter("-dAutoFilter" + name + "Images=")
        , filter("-d" + name + "ImageFilter=")
    {
    }
};

std::string valueOf(const Words &words, const std::string &name)
{
    const auto found = std::find_if(words.begin(), words.end(), [&](const std::string &word) {
        return word.compare(0, name.size(), name) == 0;
    });
    return found == words.end() ? "" : found->substr(name.size());
}

Sampling samplingOf(const std::string &type)
{
    return type == "/Bicubic"     ? Sampling::Bicubic
           : type == "/Average"   ? Sampling::Average
           : type == "/Subsample" ? Sampling::Subsample
                                  : Sampling::None;
}

ImageFilter filterOf(const std::string &name)
{
    return name == "/DCTEncode"         ? ImageFilter::Jpeg
           : name == "/FlateEncode"     ? ImageFilter::Flate
           : name == "/RunLengthEncode" ? ImageFilter::RunLength
           : name == "/JBIG2Encode"     ? ImageFilter::Jbig2
           : name == "/CCITTFaxEncode"  ? ImageFilter::Fax
                                        : ImageFilter::Any;
}

ClassOptions classOf(const Words &words, const std::string &name)
{
    const Switches switches(name);
    ClassOptions options;
    options.resolution = std::strtod(valueOf(words, switches.resolution).c_str(), nullptr);
    if (valueOf(words, switches.downsample) != "false" && options.resolution > 0)
        options.sampling = samplingOf(valueOf(words, switches.type));
    if (valueOf(words, switches.autoFilter) != "true")
        options.filter = filterOf(valueOf(words, switches.filter));
    return options;
}

bool isAboutMono(const std::string &word)
{
    const Switches mono("Mono");
    const std::string names[] = {mono.downsample, mono.type, mono.resolution, mono.autoFilter,
                                 mono.filter};
    return std::any_of(std::begin(names), std::end(names), [&](const std::string &name) {
        return word.compare(0, name.size(), name) == 0;
    });
}

// It stays on the line of the album even where bilevel images are left to the engine, so that
// Ghostscript refuses the values that it refuses elsewhere.
bool isResolution(const std::string &word)
{
    const std::string name = Switches("Mono").resolution;
    return word.compare(0, name.size(), name) == 0;
}

// Bilevel images pass through, without loss.
Words withPlainMono(const Words &words)
{
    const Switches mono("Mono");
    Words plain;
    std::copy_if(words.begin(), words.end(), std::back_inserter(plain),
                 [](const std::string &word) { return !isAboutMono(word) || isResolution(word); });
    plain.push_back(mono.downsample + "false");
    plain.push_back(mono.autoFilter + "false");
    plain.push_back(mono.filter + "/FlateEncode");
    return plain;
}

// Ghostscript's own default is to leave gray images as large as they are.
Words withGraySampling(Words words, const ImageOptions &options)
{
    if (options.gray.sampling != Sampling::None)
        words.push_back(Switches("Gray").downsample + "true");
    return words;
}

} // namespace

bool ClassOptions::downsamples(double dpi) const
{
    return sampling != Sampling::None && dpi >= resolution * threshold;
}

bool ImageOptions::monoByGhostscript() const
{
    return mono.filter == ImageFilter::RunLength || mono.filter == ImageFilter::Fax ||
           (mono.filter == ImageFilter::Flate && mono.sampling == Sampling::Subsample);
}

ImageOptions imageOptionsOf(const Words &words)
{
    ImageOptions options;
    options.any = !valueOf(words, Switches("Color").resolution).empty() ||
                  !valueOf(words, Switches("Gray").resolution).empty() ||
                  !valueOf(words, Switches("Mono").resolution).empty();
    options.colour = classOf(words, "Color");
    options.gray = classOf(words, "Gray");
    options.mono = classOf(words, "Mono");
    return options;
}

ImageOptions bilevelAlone(ImageOptions options)
{
    const ClassOptions none = {.filter = ImageFilter::Flate};
    options.colour = none;
    options.gray = none;
    return options;
}

Words rewritingWords(const Words &words)
{
    const ImageOptions options = imageOptionsOf(words);
    if (!options.any)
        return words;
    const std::string downsample = Switches("Mono").downsample;
    const Words plain = options.monoByGhostscript() ? words : withPlainMono(words);
    Words rewriting;
    std::copy_if(plain.begin(), plain.end(), std::back_inserter(rewriting),
                 [&](const std::string &word) {
                     return word.compare(0, downsample.size(), downsample) != 0;
                 });
    rewriting.push_back(downsample + "false");
    return withGraySampling(rewriting, options);
}

Words albumWords(const Words &words)
{
    const ImageOptions options = imageOptionsOf(words);
    Words album =
        withGraySampling(options.monoByGhostscript() ? words : withPlainMono(words), options);
    // Ghostscript 10.00 makes images of up to 4,000 bytes part of the content, and turns pages.
    album.emplace_back("-dMaxInlineImageSize=0");
    album.emplace_back("-dAutoRotatePages=/None");
    return album;
}

} // namespace engine
