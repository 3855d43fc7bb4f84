#include "compositefont.h"

#include "pdf/streams.h"

namespace engine {

namespace {

// How the descendant leads from its characters to glyphs.
struct CidMap
{
    bool isIdentity = true;
    std::string glyphs; // two bytes each
};

std::optional<CidMap> cidMapOf(QPDFObjectHandle descendant)
{
    QPDFObjectHandle entry = descendant.getKey("/CIDToGIDMap");
    if (entry.isNull() || entry.isNameAndEquals("/Identity"))
        return CidMap();
    if (!entry.isStream())
        return std::nullopt;
    auto bytes = decodedBytesOf(entry);
    if (!bytes)
        return std::nullopt;
    return CidMap{false, std::move(*bytes)};
}

Glyph mapped(const CidMap &map, unsigned cid)
{
    if (map.isIdentity)
        return cid;
    const std::size_t place = std::size_t(cid) * 2;
    if (place + 1 >= map.glyphs.size())
        return 0;
    return Glyph(std::uint8_t(map.glyphs[place])) << 8 | std::uint8_t(map.glyphs[place + 1]);
}

// A CFF goes by its own numbers; that of an OpenType font by the map or as it is, too.
Glyphs glyphsOfCid(unsigned cid, const CidMap &map, const FontProgram &program)
{
    Glyphs glyphs;
    if (program.isCidKeyed())
        glyphs = program.ofCid(cid);
    if (!program.isBareCff() || !program.isCidKeyed())
        glyphs.insert(mapped(map, cid));
    if (program.hasCff() && !program.isCidKeyed())
        glyphs.insert(cid);
    return glyphs;
}

// Vertical writing has some letters replaced by others, as the program's layout tables say.
bool isCertain(QPDFObjectHandle font, const FontProgram &program)
{
    QPDFObjectHandle encoding = font.getKey("/Encoding");
    return encoding.isNameAndEquals("/Identity-H") ||
           (encoding.isNameAndEquals("/Identity-V") && program.face().table("GSUB").empty());
}

} // namespace

std::optional<Glyphs> glyphsOfComposite(QPDFObjectHandle font, QPDFObjectHandle descendant,
                                        const std::set<unsigned> &codes, const FontProgram &program)
{
    const auto map = cidMapOf(descendant);
    if (!map || !isCertain(font, program))
        return std::nullopt;
    Glyphs glyphs;
    for (const unsigned code : codes)
        glyphs.merge(glyphsOfCid(code, *map, program));
    return glyphs;
}

std::set<unsigned> cidsOf(QPDFObjectHandle descendant, const Glyphs &glyphs,
                          const FontProgram &program)
{
    constexpr unsigned cidCount = 0x10000;
    std::set<unsigned> cids;
    const auto map = cidMapOf(descendant);
    for (unsigned cid = 0; map && cid < cidCount; ++cid) {
        for (const Glyph glyph : glyphsOfCid(cid, *map, program)) {
            if (glyphs.count(glyph) != 0)
                cids.insert(cid);
        }
    }
    return cids;
}

} // namespace engine
