#pragma once

#include "pieces.h"

namespace engine {

/// Deflates every stream anew whose bytes become fewer by that, after a PNG predictor where an
/// image is smaller with one. What is there for transport alone comes off; metadata stays as it is,
/// which programs that know no PDF look for.
void recodeStreams(QPDF &document, const LosslessOptions &options);

} // namespace engine
