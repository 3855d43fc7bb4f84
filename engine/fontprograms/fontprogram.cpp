#include "fontprogram.h"

#include "characternames.h"

#include <utility>

namespace engine {

namespace {

template <typename Key>
Glyphs glyphsOf(const std::multimap<Key, Glyph> &glyphs, const Key &key)
{
    Glyphs found;
    const auto [begin, end] = glyphs.equal_range(key);
    for (auto entry = begin; entry != end; ++entry)
        found.insert(entry->second);
    return found;
}

} // namespace

std::optional<FontProgram> FontProgram::of(const std::string &bytes)
{
    auto whole = Face::of(bytes);
    if (!whole)
        return std::nullopt;
    FontProgram program(std::move(*whole));
    if (auto cff = Face::of(program.face().table("CFF ")))
        program.m_faces.push_back(std::move(*cff));
    program.m_names = program.m_faces.back().names();
    program.m_cids = program.m_faces.back().characters();
    return program;
}

FontProgram::FontProgram(Face face)
{
    m_faces.push_back(std::move(face));
}

bool FontProgram::isBareCff() const
{
    return !face().isSfnt();
}

Glyphs FontProgram::ofCode(unsigned code) const
{
    Glyphs glyphs;
    for (const Face &one : m_faces)
        glyphs.merge(one.ofCode(code));
    return glyphs;
}

Glyphs FontProgram::ofCharacter(char32_t character) const
{
    Glyphs glyphs;
    for (const Face &one : m_faces)
        glyphs.merge(one.ofCharacter(character));
    if (const int code = macCodeOf(character); code >= 0)
        glyphs.merge(face().ofMacCode(unsigned(code)));
    for (const std::string &name : namesOf(character))
        glyphs.merge(named(name));
    return glyphs;
}

Glyphs FontProgram::named(const std::string &name) const
{
    return glyphsOf(m_names, name);
}

Glyphs FontProgram::ofCid(unsigned cid) const
{
    return glyphsOf(m_cids, cid);
}

} // namespace engine
