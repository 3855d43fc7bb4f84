#pragma once

#include "pieces.h"

namespace engine {

/// Recodes the JPEG streams that become smaller: every sample stays as it was. What lies around a
/// JPEG for transport comes off.
void recodeJpegStreams(QPDF &document, const LosslessOptions &options);

} // namespace engine
