#pragma once

#include <cstdint>
#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

enum class ImageKind {
    Colour,
    Gray,
    Bilevel, ///< stencil masks as well
    SoftMask
};

/// Why an image stays as it is, whatever a line asks for.
enum class LeftAlone {
    No,
    Damaged,        ///< its entries make no sense, or are not what its stream says
    ColourKey,      ///< its mask names colours by their samples, which would change
    Matte,          ///< its colours were mixed with a backdrop by its soft mask, or it is that mask
    SoftMaskInside, ///< /SMaskInData
    Alternates,
    ColourSpace, ///< Lab, DeviceN, Pattern, or one that nobody knows: samples can't be mixed
    Decode,      ///< of indexed colours
    Jpeg2000,
    ColourTransform, ///< said beside a JPEG: Ghostscript 10.00 passes over it
    ChainedFilters,  ///< of which one is not for bytes of any kind
    Filter,          ///< one that nobody knows, or that is not for such samples
    NotFound,        ///< by the walk through what is shown
    Unclear,         ///< in the resources of what could not be read, or shown at an unknown place
    NotShown,        ///< by default
    ShownSmall,      ///< below three points
    ShownLarge,      ///< beyond what a page can be
    OfTwoKinds       ///< both an image and another's soft mask
};

/// What an image's own entries say.
struct ImageFacts
{
    LeftAlone reason = LeftAlone::No;
    ImageKind kind = ImageKind::Colour;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    int bits = 1;       ///< of a component
    int components = 1; ///< of a sample; of the colour that an index stands for
    bool indexed = false;
    bool generic = false; ///< nothing is lost by its filters
    bool jpeg = false;
    std::size_t bytes = 0; ///< of its stream
};

/// Reads an image's dictionary, and the head of its stream. isSoftMask: as it is used.
ImageFacts factsOf(QPDFObjectHandle image, bool isSoftMask);

/// The colours that an Indexed colour space has its own from; null if it is none.
QPDFObjectHandle baseOf(QPDFObjectHandle colourSpace);

} // namespace engine
