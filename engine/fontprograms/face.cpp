#include "face.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_CID_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H
#include <vector>

namespace engine {

namespace {

// One for all faces, until the process ends.
FT_Library freetype()
{
    static const FT_Library library = [] {
        FT_Library made = nullptr;
        return FT_Init_FreeType(&made) == 0 ? made : nullptr;
    }();
    return library;
}

FT_FaceRec_ *openedFace(const std::string &program)
{
    FT_Face face = nullptr;
    const auto *bytes = reinterpret_cast<const FT_Byte *>(program.data());
    if (!freetype() ||
        FT_New_Memory_Face(freetype(), bytes, FT_Long(program.size()), 0, &face) != 0)
        return nullptr;
    return face;
}

bool isUnicode(const FT_CharMapRec_ &map)
{
    return map.encoding == FT_ENCODING_UNICODE;
}

bool isMacintosh(const FT_CharMapRec_ &map)
{
    return map.platform_id == 1;
}

bool isAny(const FT_CharMapRec_ &)
{
    return true;
}

// Codes of symbol fonts, which have one page of the private use area for their letters.
constexpr unsigned symbolPages[] = {0xF000, 0xF100, 0xF200};

template <typename Filter>
Glyphs glyphsOf(FT_Face face, FT_ULong code, Filter isWanted)
{
    Glyphs glyphs;
    for (FT_Int index = 0; index < face->num_charmaps; ++index) {
        if (!isWanted(*face->charmaps[index]) || FT_Set_Charmap(face, face->charmaps[index]) != 0)
            continue;
        if (const FT_UInt glyph = FT_Get_Char_Index(face, code))
            glyphs.insert(glyph);
    }
    return glyphs;
}

// A bare CFF that is keyed by characters counts, and loads, by these; its glyphs end where FreeType
// knows no character for them.
std::optional<unsigned> characterOf(FT_Face face, Glyph glyph)
{
    FT_UInt character = 0;
    if (FT_Get_CID_From_Glyph_Index(face, glyph, &character) != 0)
        return std::nullopt;
    return character;
}

// In the font's own units.
struct Drawing
{
    std::vector<FT_Pos> points; // x and y in turn, the advance last
    std::vector<int> curves;
    std::vector<int> ends;
};

bool operator==(const Drawing &one, const Drawing &other)
{
    return one.points == other.points && one.curves == other.curves && one.ends == other.ends;
}

Drawing drawingOf(const FT_GlyphSlotRec_ &slot)
{
    const FT_Outline &outline = slot.outline;
    Drawing drawing;
    for (int index = 0; index < outline.n_points; ++index) {
        drawing.points.push_back(outline.points[index].x);
        drawing.points.push_back(outline.points[index].y);
        drawing.curves.push_back(FT_CURVE_TAG(outline.tags[index]));
    }
    drawing.points.push_back(slot.advance.x);
    drawing.ends.assign(outline.contours, outline.contours + outline.n_contours);
    return drawing;
}

} // namespace

void Face::Close::operator()(FT_FaceRec_ *face) const
{
    FT_Done_Face(face);
}

std::optional<Face> Face::of(const std::string &program)
{
    auto kept = std::make_shared<const std::string>(program);
    Face face(kept, openedFace(*kept));
    if (!face.m_face || face.m_face->num_faces != 1 || !FT_IS_SCALABLE(face.m_face))
        return std::nullopt;
    return face;
}

Face::Face(std::shared_ptr<const std::string> program, FT_FaceRec_ *face)
    : m_program(std::move(program))
    , m_face(face)
{
}

Glyph Face::count() const
{
    if (FT_IS_SFNT(m_face) || !isCidKeyed())
        return Glyph(m_face->num_glyphs);
    Glyph count = 0;
    while (characterOf(m_face.get(), count))
        ++count;
    return count;
}

bool Face::isSfnt() const
{
    return FT_IS_SFNT(m_face);
}

bool Face::isCidKeyed() const
{
    FT_Bool isKeyed = 0;
    return FT_Get_CID_Is_Internally_CID_Keyed(m_face.get(), &isKeyed) == 0 && isKeyed;
}

bool Face::knowsItsCmaps() const
{
    const std::string cmap = table("cmap");
    if (cmap.size() < 4)
        return cmap.empty();
    const int there = (int(std::uint8_t(cmap[2])) << 8) + std::uint8_t(cmap[3]);
    int known = 0;
    for (FT_Int index = 0; index < m_face->num_charmaps; ++index)
        known +=
            FT_Get_CMap_Format(m_face->charmaps[index]) >= 0; // else FreeType has made it of names
    return known == there;
}

Glyphs Face::ofCode(unsigned code) const
{
    Glyphs glyphs = glyphsOf(m_face.get(), code, isAny);
    for (const unsigned page : symbolPages)
        glyphs.merge(glyphsOf(m_face.get(), page + code, isAny));
    return glyphs;
}

Glyphs Face::ofCharacter(char32_t character) const
{
    return glyphsOf(m_face.get(), character, isUnicode);
}

Glyphs Face::ofMacCode(unsigned code) const
{
    return glyphsOf(m_face.get(), code, isMacintosh);
}

std::multimap<std::string, Glyph> Face::names() const
{
    std::multimap<std::string, Glyph> names;
    char name[256];
    for (Glyph glyph = 0; FT_HAS_GLYPH_NAMES(m_face) && glyph < count(); ++glyph) {
        if (FT_Get_Glyph_Name(m_face.get(), glyph, name, sizeof name) == 0)
            names.emplace(name, glyph);
    }
    return names;
}

std::multimap<unsigned, Glyph> Face::characters() const
{
    std::multimap<unsigned, Glyph> characters;
    const Glyph glyphs = count();
    for (Glyph glyph = 0; glyph < glyphs; ++glyph) {
        if (const auto character = characterOf(m_face.get(), glyph))
            characters.emplace(*character, glyph);
    }
    return characters;
}

bool Face::load(Glyph glyph) const
{
    const bool isByCharacter = !FT_IS_SFNT(m_face) && isCidKeyed();
    const auto index = isByCharacter ? characterOf(m_face.get(), glyph) : glyph;
    return index && FT_Load_Glyph(m_face.get(), *index, FT_LOAD_NO_SCALE) == 0 &&
           m_face->glyph->format == FT_GLYPH_FORMAT_OUTLINE;
}

bool Face::drawsLike(Glyph glyph, const Face &other, Glyph otherGlyph) const
{
    return load(glyph) && other.load(otherGlyph) &&
           drawingOf(*m_face->glyph) == drawingOf(*other.m_face->glyph);
}

bool Face::isBlank(Glyph glyph) const
{
    return load(glyph) && m_face->glyph->outline.n_points == 0;
}

std::string Face::table(const char *tag) const
{
    const FT_ULong number = FT_MAKE_TAG(tag[0], tag[1], tag[2], tag[3]);
    FT_ULong size = 0;
    if (FT_Load_Sfnt_Table(m_face.get(), number, 0, nullptr, &size) != 0 ||
        size > m_program->size())
        return {};
    std::string bytes(size, '\0');
    auto *to = reinterpret_cast<FT_Byte *>(bytes.data());
    return FT_Load_Sfnt_Table(m_face.get(), number, 0, to, &size) == 0 ? bytes : std::string();
}

} // namespace engine
