#include "recompression.h"

#include "formats/deflate.h"
#include "pdf/streams.h"
#include "pdf/walk.h"

#include <algorithm>
#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

namespace {

// What became smaller is held until it is written.
constexpr std::size_t mostOfAll = std::size_t(512) << 20;
// No deflated byte stands for more than this many.
constexpr std::size_t mostRatio = 1032;

// "/Filter /FlateDecode", for a stream that had none
constexpr std::size_t filterEntry = 21;

struct Packed
{
    std::string bytes; ///< empty: the stream has fewer
    QPDFObjectHandle parameters;
};

// Only the outermost layer is taken off: without its predictor, an image would grow.
std::optional<Packed> repacked(QPDFObjectHandle stream)
{
    const std::string raw = rawBytesOf(stream);
    if (raw.empty())
        return Packed();
    const auto bytes = inflated(raw, mostBytes);
    if (!bytes)
        return raw.size() > mostBytes / mostRatio ? std::optional(Packed()) : std::nullopt;
    std::string better = deflated(*bytes);
    if (better.size() >= raw.size())
        return Packed();
    return Packed{std::move(better), stream.getDict().getKey("/DecodeParms")};
}

std::optional<Packed> packed(QPDFObjectHandle stream)
{
    const auto bytes = decodedBytesOf(stream);
    if (!bytes)
        return {};
    std::string better = deflated(*bytes);
    if (better.size() + filterEntry >= rawBytesOf(stream).size())
        return Packed();
    return Packed{std::move(better), QPDFObjectHandle::newNull()};
}

// Run lengths are somebody's choice, for readers that know nothing else.
// Nothing if the stream is damaged.
std::optional<Packed> betterThan(QPDFObjectHandle stream)
{
    const auto filters = filtersOf(stream);
    if (filters == std::vector<std::string>{"/FlateDecode"})
        return repacked(stream);
    const bool chosen =
        std::find(filters.begin(), filters.end(), "/RunLengthDecode") != filters.end();
    return isGeneric(filters) && !chosen ? packed(stream) : Packed();
}

bool isOfType(QPDFObjectHandle dictionary, const char *key,
              std::initializer_list<const char *> names)
{
    QPDFObjectHandle type = dictionary.getKey(key);
    return std::any_of(names.begin(), names.end(),
                       [&](const char *name) { return type.isNameAndEquals(name); });
}

bool isFontProgram(QPDFObjectHandle dictionary)
{
    return dictionary.hasKey("/Length1") ||
           isOfType(dictionary, "/Subtype", {"/Type1C", "/CIDFontType0C", "/OpenType"});
}

bool mayBePacked(QPDFObjectHandle stream, bool fonts)
{
    QPDFObjectHandle dictionary = stream.getDict();
    // Programs that know no PDF look for the description in clear text; the others are not written.
    if (isOfType(dictionary, "/Type", {"/Metadata", "/ObjStm", "/XRef"}))
        return false;
    return fonts || !isFontProgram(dictionary) || !filtersOf(stream).empty();
}

} // namespace

bool recompress(QPDF &document, bool fonts)
{
    std::size_t held = 0;
    bool intact = true;
    for (QPDFObjectHandle object : reachableObjects(document)) {
        if (!object.isStream() || !mayBePacked(object, fonts) || held > mostOfAll)
            continue;
        const auto better = betterThan(object);
        intact = intact && better;
        if (!better || better->bytes.empty())
            continue;
        object.replaceStreamData(better->bytes, QPDFObjectHandle::newName("/FlateDecode"),
                                 better->parameters);
        held += better->bytes.size();
    }
    return intact;
}

} // namespace engine
