#pragma once

#include "embeddedprograms.h"
#include "fontprograms/fontprogram.h"
#include "fontuses.h"

namespace engine {

/// The glyphs that the contents show of a program, in all fonts that it serves; nothing where that
/// is not certain.
std::optional<Glyphs> shownGlyphs(const EmbeddedProgram &embedded, const FontProgram &program,
                                  const FontUses &uses);

} // namespace engine
