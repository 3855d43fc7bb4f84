#pragma once

#include "pieces.h"

namespace engine {

/// Drops what editors leave for themselves and no reader shows: private data (/PieceInfo),
/// thumbnails of pages, and metadata of everything but the document as a whole and what is attached
/// to it.
void dropLeftovers(QPDF &document, const LosslessOptions &options);

} // namespace engine
