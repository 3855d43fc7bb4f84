#pragma once

#include "face.h"

#include <map>

namespace engine {

/// What else of a font program is of use where only its glyphs are shown.
struct Needs
{
    bool cmap = true;    ///< how codes, or characters, lead to glyphs
    bool names = true;   ///< how names do
    bool numbers = true; ///< that glyphs keep their numbers; else only a CFF's names lead to them
};

struct Subset
{
    std::string bytes;
    std::map<Glyph, Glyph> numbers; ///< what the glyphs that were asked for have become
};

/// The program with these glyphs, their parts and the first alone; if they keep their numbers, with
/// the last as well, and with all others empty. Nothing where the program can't be read, or is none
/// that this is done for.
std::optional<Subset> subsetOf(const std::string &program, const Glyphs &glyphs,
                               const Needs &needs);

} // namespace engine
