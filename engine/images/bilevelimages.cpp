#include "bilevelimages.h"

#include "bilevelbitmap.h"
#include "formats/jbig2.h"
#include "pdf/foreign.h"
#include "pdf/streams.h"

#include <map>
#include <set>

namespace engine {

namespace {

using Edges = std::pair<std::uint32_t, std::uint32_t>;

// As many images of one size as are compared with one of the copy. Ghostscript keeps their order,
// so the first that is left is nearly always the one.
constexpr std::size_t lookAhead = 4;

struct Encoding
{
    std::string bytes;
    QPDFObjectHandle filter;
    QPDFObjectHandle parameters;
    bool inverted = false; ///< 0 stands for what 1 stood for
};

// The originals that no image of the copy has taken yet.
class Originals
{
public:
    explicit Originals(QPDF *document)
    {
        if (!document)
            return;
        // Of equal streams Ghostscript writes one.
        std::set<std::size_t> seen;
        for (const auto &image : bilevelImagesOf(*document)) {
            if (seen.insert(std::hash<std::string>()(rawBytesOf(image))).second)
                m_images[imageSizeOf(image)].push_back(image);
        }
    }

    /// The original's stream for these samples, if it has fewer bytes than so many.
    std::optional<Encoding> encodingOf(const Bitmap &bitmap, std::size_t bytes)
    {
        Images &images = m_images[{bitmap.width(), bitmap.height()}];
        for (std::size_t index = 0; index < std::min(images.size(), lookAhead); ++index) {
            auto encoding = encodingOf(bitmap, images[index], bytes);
            if (!encoding)
                continue;
            images.erase(images.begin() + Images::difference_type(index));
            return encoding;
        }
        return {};
    }

    [[nodiscard]] bool hasAny(Edges edges) const { return m_images.count(edges) > 0; }

private:
    static std::optional<Encoding> encodingOf(const Bitmap &bitmap, QPDFObjectHandle image,
                                              std::size_t bytes)
    {
        std::string raw = rawBytesOf(image);
        auto own = raw.size() < bytes ? bitmapOf(image) : std::nullopt;
        if (!own)
            return {};
        const bool same = *own == bitmap;
        own->invert();
        if (!same && !(*own == bitmap))
            return {};
        QPDFObjectHandle dictionary = image.getDict();
        return Encoding{std::move(raw), dictionary.getKey("/Filter"),
                        dictionary.getKey("/DecodeParms"), !same};
    }

    std::map<Edges, Images> m_images;
};

std::optional<Encoding> jbig2Of(const Bitmap &bitmap, std::size_t bytes)
{
    std::string stream = encodeJbig2(bitmap);
    if (stream.empty() || stream.size() >= bytes)
        return {};
    return Encoding{std::move(stream), QPDFObjectHandle::newName("/JBIG2Decode"),
                    QPDFObjectHandle::newNull()};
}

void invertDecode(QPDFObjectHandle dictionary)
{
    QPDFObjectHandle decode = dictionary.getKey("/Decode");
    const bool isGiven = decode.isArray() && decode.getArrayNItems() == 2;
    dictionary.replaceKey("/Decode", isGiven ? QPDFObjectHandle::newArray(
                                                   {decode.getArrayItem(1), decode.getArrayItem(0)})
                                             : QPDFObjectHandle::parse("[1 0]"));
}

void replace(QPDF &copy, QPDFObjectHandle image, const Encoding &encoding)
{
    image.replaceStreamData(encoding.bytes, broughtInto(copy, encoding.filter),
                            broughtInto(copy, encoding.parameters));
    if (encoding.inverted)
        invertDecode(image.getDict());
}

} // namespace

void shrinkBilevelImages(QPDF &copy, QPDF *original, bool anyCompression)
{
    Originals originals(original);
    for (const QPDFObjectHandle &image : bilevelImagesOf(copy)) {
        if (!anyCompression && !originals.hasAny(imageSizeOf(image)))
            continue;
        const auto bitmap = bitmapOf(image);
        if (!bitmap)
            continue;
        std::size_t bytes = rawBytesOf(image).size();
        auto best = originals.encodingOf(*bitmap, bytes);
        if (best)
            bytes = best->bytes.size();
        if (auto own = anyCompression ? jbig2Of(*bitmap, bytes) : std::nullopt)
            best = std::move(own);
        if (best)
            replace(copy, image, *best);
    }
}

} // namespace engine
