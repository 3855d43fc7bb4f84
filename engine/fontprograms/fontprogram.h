#pragma once

#include "face.h"

#include <vector>

namespace engine {

/// An embedded font program, and what its cmaps, names and built-in encoding say. Of an OpenType
/// font with a CFF, both are asked.
class FontProgram
{
public:
    /// Nothing if it is none that FreeType reads.
    static std::optional<FontProgram> of(const std::string &bytes);

    [[nodiscard]] const Face &face() const { return m_faces.front(); }
    [[nodiscard]] bool isBareCff() const;
    [[nodiscard]] bool hasCff() const { return isBareCff() || m_faces.size() > 1; }
    [[nodiscard]] bool isCidKeyed() const { return m_faces.back().isCidKeyed(); }

    [[nodiscard]] Glyphs ofCode(unsigned code) const;
    [[nodiscard]] Glyphs ofCharacter(char32_t character) const;

    /// Those that are called so; Latin letters and such may be called by other names as well.
    [[nodiscard]] Glyphs named(const std::string &name) const;

    /// Those with that number in the collection of a CID-keyed CFF.
    [[nodiscard]] Glyphs ofCid(unsigned cid) const;
    [[nodiscard]] const std::multimap<unsigned, Glyph> &cids() const { return m_cids; }
    [[nodiscard]] const std::multimap<std::string, Glyph> &names() const { return m_names; }

private:
    explicit FontProgram(Face face);

    std::vector<Face> m_faces;
    std::multimap<std::string, Glyph> m_names;
    std::multimap<unsigned, Glyph> m_cids;
};

} // namespace engine
