#pragma once

#include "albumstage.h"
#include "proof.h"

namespace engine {

/// The document as Ghostscript gets it to write PDF/A: open to all, with bilevel images as the line
/// wants them, made and proven as for a document that stays. Of their patterns Ghostscript 10.00
/// makes areas of one tone. The album was surveyed for bilevel images alone, and the proof has
/// begun. Throws a Failure if the document can't be read.
Descriptor preparedDocument(const Run &run, AlbumStage &album, Proof &proof);

} // namespace engine
