#pragma once

#include "pieces.h"

namespace engine {

/// Keeps font programs that are equal once, so that the glyphs of all who use one are counted
/// together when it becomes a subset.
void mergeEqualFontPrograms(QPDF &document, const LosslessOptions &options);

/// Keeps parts of what is drawn that are equal once, from the leaves up: two images are equal only
/// if their soft masks are.
void mergeEqualParts(QPDF &document, const LosslessOptions &options);

} // namespace engine
