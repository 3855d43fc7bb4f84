#pragma once

#include "embeddedprograms.h"
#include "fontprograms/fontprogram.h"

namespace engine {

/// Six letters for a subset, which its bytes decide.
std::string tagOf(const std::string &program);

/// The name without the tag of a subset; both with the slash.
std::string withoutTag(const std::string &name);

/// Gives all fonts of the program this tag instead of the one that they may have.
void setTag(const EmbeddedProgram &program, const std::string &tag);

/// Has the descriptors list what the subset shows, where they have a list or the document is to
/// have one, as PDF/A-1 asks for.
void listGlyphs(QPDF &document, const EmbeddedProgram &program, const FontProgram &subset,
                const Glyphs &glyphs);

} // namespace engine
