#pragma once

#include "pieces.h"

namespace engine {

/// Keeps parts of what is drawn that are equal once, from the leaves up: two images are equal only
/// if their soft masks are.
void mergeEqualParts(QPDF &document, const LosslessOptions &options);

} // namespace engine
