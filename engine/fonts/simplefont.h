#pragma once

#include "fontprograms/fontprogram.h"

#include <qpdf/QPDFObjectHandle.hh>

namespace engine {

/// What the /Differences of an encoding call its codes; names are without the slash.
std::map<unsigned, std::string> differencesOf(QPDFObjectHandle encoding);

/// The glyphs that these codes of a simple font show, by whatever way a reader finds them: the
/// font's encoding and the program's cmaps, names and built-in encoding. Nothing where that is not
/// certain.
std::optional<Glyphs> glyphsOfSimple(QPDFObjectHandle font, const std::set<unsigned> &codes,
                                     const FontProgram &program);

} // namespace engine
