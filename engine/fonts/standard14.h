#pragma once

#include "embeddedprograms.h"
#include "fontuses.h"

namespace engine {

/// Whether the program serves standard fonts only, each reader has a font of its own for it, and
/// that shows the same letters without it.
bool canBeLeftOut(const EmbeddedProgram &program, const FontUses &uses);

/// Takes the program out of its descriptors, and the tags off the fonts' names.
void leaveOut(const EmbeddedProgram &program);

} // namespace engine
