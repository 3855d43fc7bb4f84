#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

struct FT_FaceRec_;

namespace engine {

using Glyph = std::uint32_t;
using Glyphs = std::set<Glyph>;

/// A font program as FreeType reads it: TrueType, OpenType or bare CFF. A hostile program is only
/// to be opened where a crash or an endless loop does no harm.
class Face
{
public:
    /// Nothing if FreeType doesn't know the program, or if it is a collection of several.
    static std::optional<Face> of(const std::string &program);

    [[nodiscard]] Glyph count() const;

    /// TrueType or OpenType, not bare CFF.
    [[nodiscard]] bool isSfnt() const;

    /// Whether the glyphs of a CFF are numbered by characters of a collection, and have no names.
    [[nodiscard]] bool isCidKeyed() const;

    /// Whether FreeType can read all cmaps that there are.
    [[nodiscard]] bool knowsItsCmaps() const;

    /// What the code shows by any of the program's cmaps or its built-in encoding, as it is and in
    /// the ranges of symbol fonts; .notdef is left out, here and below.
    [[nodiscard]] Glyphs ofCode(unsigned code) const;

    /// The same for a character, by the cmaps that are about Unicode, or names that stand for it.
    [[nodiscard]] Glyphs ofCharacter(char32_t character) const;

    /// The same for a code of Mac OS Roman, by cmap (1,0).
    [[nodiscard]] Glyphs ofMacCode(unsigned code) const;

    /// The names that the program gives its glyphs, the same to several at times; empty if it gives
    /// none.
    [[nodiscard]] std::multimap<std::string, Glyph> names() const;

    /// The numbers that the glyphs of a CID-keyed CFF have in its collection.
    [[nodiscard]] std::multimap<unsigned, Glyph> characters() const;

    /// Whether the glyph is drawn like one of another program, with the same advance; not if either
    /// is damaged.
    [[nodiscard]] bool drawsLike(Glyph glyph, const Face &other, Glyph otherGlyph) const;

    /// Whether there is nothing to see.
    [[nodiscard]] bool isBlank(Glyph glyph) const;

    /// A table of a TrueType or OpenType font; empty if there is none.
    [[nodiscard]] std::string table(const char *tag) const;

private:
    struct Close
    {
        void operator()(FT_FaceRec_ *face) const;
    };

    [[nodiscard]] bool load(Glyph glyph) const;
    Face(std::shared_ptr<const std::string> program, FT_FaceRec_ *face);

    std::shared_ptr<const std::string> m_program; // outlives the face
    std::unique_ptr<FT_FaceRec_, Close> m_face;
};

} // namespace engine
