#include "streamcoding.h"

#include "everystream.h"
#include "filterchain.h"
#include "formats/deflate.h"
#include "formats/prediction.h"
#include "pdf/streams.h"

#include <algorithm>

namespace engine {

namespace {

using Object = QPDFObjectHandle;

// What became smaller is held until it is written.
constexpr std::size_t mostOfAll = std::size_t(512) << 20;

// Of an image, to see whether a predictor pays; what does not save this many per cent there is not
// worth the second look at all of it.
constexpr std::size_t sampleSize = std::size_t(64) << 10;
constexpr std::size_t leastSaving = 5;

struct Coding
{
    std::string bytes;
    std::vector<Layer> layers;
};

bool isOfType(Object dictionary, const char *key, std::initializer_list<const char *> names)
{
    Object type = dictionary.getKey(key);
    return std::any_of(names.begin(), names.end(),
                       [&](const char *name) { return type.isNameAndEquals(name); });
}

bool isFontProgram(Object dictionary)
{
    return dictionary.hasKey("/Length1") ||
           isOfType(dictionary, "/Subtype", {"/Type1C", "/CIDFontType0C", "/OpenType"});
}

bool mayBeRecoded(Object stream, bool fonts)
{
    Object dictionary = stream.getDict();
    // Streams of the file's own are written anew; one with /F has its bytes in another file.
    if (isOfType(dictionary, "/Type", {"/Metadata", "/ObjStm", "/XRef"}) || dictionary.hasKey("/F"))
        return false;
    return fonts || !isFontProgram(dictionary) || !filtersOf(stream).empty();
}

bool isImageCodec(const Layer &layer)
{
    constexpr const char *codecs[] = {"/DCTDecode", "/CCITTFaxDecode", "/JBIG2Decode",
                                      "/JPXDecode"};
    return std::find(std::begin(codecs), std::end(codecs), layer.filter) != std::end(codecs);
}

struct Picture
{
    std::size_t rowSize;
    std::size_t pixelSize;
};

std::size_t countOf(Object number)
{
    return number.isInteger() ? std::size_t(std::max(0, number.getIntValueAsInt())) : 0;
}

// Of gray, RGB or CMYK with 8 bits each; an index into a palette predicts nothing, which the sample
// will show.
std::optional<Picture> pictureIn(Object dictionary, std::size_t size)
{
    const std::size_t pixels =
        countOf(dictionary.getKey("/Width")) * countOf(dictionary.getKey("/Height"));
    if (!isOfType(dictionary, "/Subtype", {"/Image"}) || pixels == 0 || size % pixels != 0 ||
        countOf(dictionary.getKey("/BitsPerComponent")) != 8)
        return {};
    const std::size_t colours = size / pixels;
    if (colours != 1 && colours != 3 && colours != 4)
        return {};
    return Picture{countOf(dictionary.getKey("/Width")) * colours, colours};
}

// Whole rows from the middle of the picture.
std::string sampleOf(const std::string &bytes, std::size_t rowSize)
{
    const std::size_t rows = bytes.size() / rowSize;
    const std::size_t wanted = std::min(rows, sampleSize / rowSize + 1);
    return bytes.substr((rows - wanted) / 2 * rowSize, wanted * rowSize);
}

bool isWorthPredicting(const std::string &bytes, const Picture &picture)
{
    const std::string sample = sampleOf(bytes, picture.rowSize);
    const std::size_t plain = deflated(sample).size();
    const std::size_t better =
        deflated(predicted(sample, picture.rowSize, picture.pixelSize)).size();
    return better * 100 < plain * (100 - leastSaving);
}

Object pngParameters(const Picture &picture)
{
    Object parameters = Object::newDictionary();
    parameters.replaceKey("/Predictor", Object::newInteger(15));
    parameters.replaceKey("/Colors", Object::newInteger(int(picture.pixelSize)));
    parameters.replaceKey("/Columns", Object::newInteger(int(picture.rowSize / picture.pixelSize)));
    return parameters;
}

Coding coded(const std::string &bytes, Object dictionary, Object predictor)
{
    const auto picture = predictor.isNull() ? pictureIn(dictionary, bytes.size()) : std::nullopt;
    if (!picture || !isWorthPredicting(bytes, *picture))
        return {deflated(bytes), {{"/FlateDecode", predictor}}};
    return {deflated(predicted(bytes, picture->rowSize, picture->pixelSize)),
            {{"/FlateDecode", pngParameters(*picture)}}};
}

// Almost all streams are like that, and libqpdf would take a predictor off as well.
bool isDeflatedOnly(const std::vector<Layer> &layers)
{
    return layers.size() == 1 && layers[0].filter == "/FlateDecode";
}

std::optional<Coding> codingFor(QPDF &document, Object stream)
{
    const std::vector<Layer> layers = layersOf(stream);
    const std::size_t outer = genericLayers(layers);
    if (outer < layers.size() && (outer == 0 || !isImageCodec(layers[outer])))
        return {};
    const auto bytes = isDeflatedOnly(layers) ? inflated(rawBytesOf(stream), mostBytes)
                                              : bytesBelow(document, stream, outer);
    if (!bytes)
        return {};
    if (outer < layers.size())
        return Coding{*bytes, {layers.begin() + std::ptrdiff_t(outer), layers.end()}};
    return coded(*bytes, stream.getDict(),
                 layers.empty() ? Object::newNull() : predictorOf(layers.back().parameters));
}

// A predictor of an outer layer is nothing that anybody writes.
bool isUsual(const std::vector<Layer> &layers)
{
    return std::all_of(layers.begin(), layers.end(), [&](const Layer &layer) {
        return &layer == &layers.back() || predictorOf(layer.parameters).isNull();
    });
}

std::size_t recode(QPDF &document, Object stream)
{
    const std::size_t size = rawBytesOf(stream).size();
    if (size == 0 || !isUsual(layersOf(stream)))
        return 0;
    const auto better = codingFor(document, stream);
    if (!better || better->bytes.size() + sizeOfEntries(better->layers) >=
                       size + sizeOfEntries(layersOf(stream)))
        return 0;
    replaceBytes(stream, better->bytes, better->layers);
    return better->bytes.size();
}

} // namespace

void recodeStreams(QPDF &document, const LosslessOptions &options)
{
    std::size_t held = 0;
    forEveryStream(document, [&](Object stream) {
        if (held <= mostOfAll && mayBeRecoded(stream, options.compressFonts))
            held += recode(document, stream);
    });
}

} // namespace engine
