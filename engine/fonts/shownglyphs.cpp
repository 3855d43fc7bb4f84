#include "shownglyphs.h"

#include "compositefont.h"
#include "simplefont.h"

namespace engine {

namespace {

// The standard fonts' widths are known by their names, which a tag would change.
bool needsItsName(QPDFObjectHandle font)
{
    return !font.getKey("/Widths").isArray();
}

std::optional<Glyphs> glyphsOf(ProgramUser user, const FontProgram &program, const FontUse &use)
{
    if (!user.isComposite())
        return needsItsName(user.font) ? std::nullopt
                                       : glyphsOfSimple(user.font, use.bytes, program);
    if (use.hasOddBytes)
        return std::nullopt;
    return glyphsOfComposite(user.font, user.descendant, use.pairs, program);
}

} // namespace

std::optional<Glyphs> shownGlyphs(const EmbeddedProgram &embedded, const FontProgram &program,
                                  const FontUses &uses)
{
    Glyphs all;
    for (const ProgramUser &user : embedded.users) {
        auto glyphs = glyphsOf(user, program, uses.of(user.font));
        if (!glyphs)
            return std::nullopt;
        all.merge(*glyphs);
    }
    // What lies beyond the last is shown as the first, by all readers.
    all.erase(all.lower_bound(program.face().count()), all.end());
    return all;
}

} // namespace engine
