#pragma once

#include "pieces.h"

namespace engine {

/// Cuts out of the document's own metadata what no reader shows: padding, thumbnails, an editor's
/// palettes, and, unless the document claims to be PDF/A, which recommends it, the history of its
/// editing. What is stored in clear text stays so.
void trimPacket(QPDF &document, const LosslessOptions &options);

} // namespace engine
