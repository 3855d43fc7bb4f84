#include "keptdocument.h"

#include "images/album.h"
#include "images/takeimages.h"
#include "lossless/claim.h"
#include "lossless/objectstreams.h"
#include "mark.h"
#include "pdf/copywriter.h"
#include "pdf/document.h"
#include "pdf/pageboxes.h"
#include "signature.h"
#include "system/wholefile.h"

#include <algorithm>
#include <memory>

namespace engine {

namespace {

std::unique_ptr<Document> opened(int file)
{
    auto document = std::make_unique<Document>(file, Trust::Foreign);
    document->repair();
    return document;
}

// Without an album there are still images that are made smaller here.
TakenImages imagesTaken(QPDF &document, const DraftOrder &order)
{
    const auto index = albumIndexOf(contentOf(order.index));
    if (!index)
        throw std::runtime_error("the index of the album is damaged");
    std::unique_ptr<Document> album;
    if (order.album >= 0)
        album = std::make_unique<Document>(order.album, Trust::Own);
    return takeImages(document, album ? &album->pdf() : nullptr, *index, order.images,
                      order.excluded);
}

struct SmallerParts
{
    TakenImages images;
    FontResult fonts;
};

SmallerParts makePartsSmaller(QPDF &document, const DraftOrder &order)
{
    SmallerParts parts;
    parts.images = imagesTaken(document, order);
    parts.fonts = shrinkFonts(document, order.fonts, order.excluded);
    return parts;
}

int objectsIn(const std::vector<TouchedPart> &parts)
{
    std::set<int> objects;
    for (const TouchedPart &part : parts)
        objects.insert(part.object);
    return int(objects.size());
}

// A part that can't be taken back: after a repair every page has to look the same.
std::vector<TouchedPart> wholePages(QPDF &document)
{
    std::vector<TouchedPart> parts;
    for (const PageView &view : pageViewsOf(document))
        parts.push_back(wholePage(PartKind::Font, everything, view));
    return parts;
}

std::vector<TouchedPart> partsOf(const std::vector<SurveyedImage> &images,
                                 const ImageOptions &options)
{
    std::vector<TouchedPart> parts;
    for (const SurveyedImage &image : images) {
        if (treatmentOf(image, options) != Treatment::None)
            parts.insert(parts.end(), image.parts.begin(), image.parts.end());
    }
    return parts;
}

ObjectStreamFacts objectStreamFacts(Document &document, const LosslessOptions &options)
{
    return {.version = document.pdf().getPDFVersion(),
            .present = document.hasObjectStreams(),
            .standard = options.standard};
}

// Few objects don't pay for a stream.
std::uintmax_t writeSmallest(QPDF &document, const DraftOrder &order, WriteOptions options)
{
    constexpr std::size_t few = 200;
    const std::uintmax_t size = writeCopy(document, order.draft, options);
    if (!options.newObjectStreams || document.getObjectCount() > few)
        return size;
    options.newObjectStreams = false;
    return copySize(document, options) <= size ? writeCopy(document, order.draft, options) : size;
}

} // namespace

SurveyReport surveyDocument(const SurveyOrder &order)
{
    const auto document = opened(order.document);
    QPDF &pdf = document->pdf();
    const auto images = order.images.any ? surveyImages(pdf) : std::vector<SurveyedImage>();
    const AlbumIndex album = writeAlbum(pdf, images, order.images, order.album);
    setContent(order.index, linesOf(album));
    setContent(order.views, linesOf(pageViewsOf(pdf)));
    // Where all is read anew, every page may look otherwise. Which fonts change is not known yet.
    const bool everywhere = !document->isSound();
    setContent(order.parts, linesOf(everywhere ? wholePages(pdf) : partsOf(images, order.images)));
    return {.pages = document->pages(),
            .albumPages = int(album.size()),
            .damaged = !document->isSound(),
            .isSigned = isSigned(pdf)};
}

DraftReport makeDraft(const DraftOrder &order)
{
    const auto document = opened(order.document);
    QPDF &pdf = document->pdf();
    LosslessOptions lossless = order.lossless;
    lossless.standard = claimedStandard(pdf);
    WriteOptions writing;
    writing.newObjectStreams = mayHaveObjectStreams(objectStreamFacts(*document, lossless));
    writing.leastSize = order.leastSize;

    DraftReport report;
    SmallerParts parts;
    if (order.withParts)
        parts = makePartsSmaller(pdf, order);
    if (parts.images.jbig2)
        writing.leastVersion = "1.4";
    if (order.withPieces)
        applyPieces(pdf, lossless);
    report.images = objectsIn(parts.images.touched);
    report.fonts = objectsIn(parts.fonts.touched);
    report.described = applyChanges(pdf, order.description);
    report.isRestricted = pdf.isEncrypted();
    report.damaged = !document->isSound();
    setContent(order.touched, linesOf(parts.images.touched) + linesOf(parts.fonts.touched) +
                                  (report.damaged ? linesOf(wholePages(pdf)) : std::string()));
    report.size = writeSmallest(pdf, order, writing);
    return report;
}

} // namespace engine
