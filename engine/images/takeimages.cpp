#include "takeimages.h"

#include "pdf/foreign.h"
#include "pdf/streams.h"
#include "smallerimage.h"
#include "system/progress.h"

#include <map>
#include <qpdf/QPDFPageObjectHelper.hh>

namespace engine {

namespace {

constexpr double sameSize = 1.001;

// Null unless the page shows one image and nothing else.
QPDFObjectHandle onlyImageOf(QPDFObjectHandle page)
{
    QPDFObjectHandle resources = QPDFPageObjectHelper(page).getAttribute("/Resources", false);
    QPDFObjectHandle objects =
        resources.isDictionary() ? resources.getKey("/XObject") : QPDFObjectHandle::newNull();
    if (!objects.isDictionary() || objects.getKeys().size() != 1)
        return QPDFObjectHandle::newNull();
    QPDFObjectHandle object = objects.getDictAsMap().begin()->second;
    return object.isStream() && object.getDict().getKey("/Subtype").isNameAndEquals("/Image")
               ? object
               : QPDFObjectHandle::newNull();
}

struct WrittenImage
{
    QPDFObjectHandle image;
    double dpi; ///< at which its page showed it
};

// By the number of the image that each stands for.
std::map<int, WrittenImage> writtenImages(QPDF *album, const AlbumIndex &index)
{
    std::map<int, WrittenImage> images;
    if (!album || album->getAllPages().size() != index.size())
        return images;
    for (std::size_t page = 0; page < index.size(); ++page) {
        QPDFObjectHandle image = onlyImageOf(album->getAllPages()[page]);
        if (!image.isNull() && index[page].object > 0)
            images.emplace(index[page].object, WrittenImage{image, index[page].dpi});
    }
    return images;
}

class Taker
{
public:
    Taker(QPDF &document, QPDF *album, const AlbumIndex &index, const ImageOptions &options)
        : m_document(document)
        , m_written(writtenImages(album, index))
        , m_options(options)
    {
    }

    void take(const SurveyedImage &image)
    {
        QPDFObjectHandle object = m_document.getObject(image.object, 0);
        const auto smaller = smallerOf(object, image);
        if (!smaller || smaller->bytes.size() >= rawBytesOf(object).size())
            return;
        replace(object, *smaller);
        m_taken.jbig2 = m_taken.jbig2 || smaller->jbig2;
        m_taken.touched.insert(m_taken.touched.end(), image.parts.begin(), image.parts.end());
    }

    TakenImages taken() { return std::move(m_taken); }

private:
    std::optional<SmallerImage> smallerOf(const QPDFObjectHandle &object,
                                          const SurveyedImage &image)
    {
        switch (treatmentOf(image, m_options)) {
        case Treatment::None:
            return {};
        case Treatment::Here:
            return image.facts.kind == ImageKind::SoftMask
                       ? smallerSoftMask(object, image, m_options.gray)
                       : fromPixels(ownPixels(object, image.facts), image.dpi);
        case Treatment::Ghostscript:
        case Treatment::Pixels:
            break;
        }
        // Equal images were merged since the survey, and one of them is shown larger: the album's
        // image has too few pixels for that.
        const auto written = m_written.find(image.object);
        if (written == m_written.end() || written->second.dpi > image.dpi * sameSize)
            return {};
        if (treatmentOf(image, m_options) == Treatment::Pixels)
            return fromPixels(pixelsFromAlbum(written->second.image, image.facts), image.dpi);
        return smallerFromAlbum(written->second.image, image.facts);
    }

    static std::optional<Bitmap> ownPixels(const QPDFObjectHandle &object, const ImageFacts &facts)
    {
        const auto samples = decodedBytesOf(object);
        return samples ? Bitmap::ofSamples(facts.width, facts.height, *samples) : std::nullopt;
    }

    [[nodiscard]] std::optional<SmallerImage> fromPixels(const std::optional<Bitmap> &bitmap,
                                                         double dpi) const
    {
        return bitmap ? smallerBilevel(*bitmap, dpi, m_options.mono) : std::nullopt;
    }

    void replace(QPDFObjectHandle object, const SmallerImage &smaller)
    {
        QPDFObjectHandle dictionary = object.getDict();
        QPDFObjectHandle base = baseOf(dictionary.getKey("/ColorSpace"));
        object.replaceStreamData(smaller.bytes, broughtInto(m_document, smaller.filter),
                                 broughtInto(m_document, smaller.parameters));
        dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(smaller.width));
        dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(smaller.height));
        // A stencil mask has no need of it.
        if (dictionary.hasKey("/BitsPerComponent"))
            dictionary.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(smaller.bits));
        if (smaller.bits > 1 && !base.isNull()) {
            dictionary.replaceKey("/ColorSpace", base);
            dictionary.removeKey("/Decode");
        }
    }

    QPDF &m_document;
    std::map<int, WrittenImage> m_written;
    const ImageOptions &m_options;
    TakenImages m_taken;
};

} // namespace

TakenImages takeImages(QPDF &document, QPDF *album, const AlbumIndex &index,
                       const ImageOptions &options, const std::set<int> &excluded)
{
    Taker taker(document, album, index, options);
    for (const SurveyedImage &image : surveyImages(document)) {
        if (excluded.count(image.object) == 0)
            taker.take(image);
        reportProgress();
    }
    return taker.taken();
}

} // namespace engine
