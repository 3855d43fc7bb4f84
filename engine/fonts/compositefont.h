#pragma once

#include "fontprograms/fontprogram.h"

#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

/// The glyphs that these codes of two bytes show in a composite font, with its one descendant.
/// Nothing where that is not certain.
std::optional<Glyphs> glyphsOfComposite(QPDFObjectHandle font, QPDFObjectHandle descendant,
                                        const std::set<unsigned> &codes,
                                        const FontProgram &program);

/// The numbers of characters in the descendant that show these glyphs.
std::set<unsigned> cidsOf(QPDFObjectHandle descendant, const Glyphs &glyphs,
                          const FontProgram &program);

} // namespace engine
