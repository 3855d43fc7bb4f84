#pragma once

#include "face.h"

namespace engine {

/// What else of a font program is of use where only its glyphs are shown.
struct Needs
{
    bool cmap = true;  ///< how codes, or characters, lead to glyphs
    bool names = true; ///< how names do
};

/// The program with these glyphs, their parts, the first and the last alone. All keep their
/// numbers; the others are empty. Nothing where the program can't be read, or is none that this is
/// done for.
std::optional<std::string> subsetOf(const std::string &program, const Glyphs &glyphs,
                                    const Needs &needs);

} // namespace engine
