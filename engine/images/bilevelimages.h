#pragma once

#include <qpdf/QPDF.hh>

namespace engine {

/// Gives every bilevel image of the copy the shortest stream for its samples: its own, the one that
/// it has in the original (null: none), or, where any compression will do, one in JBIG2.
/// The original has to live until the copy is written.
void shrinkBilevelImages(QPDF &copy, QPDF *original, bool anyCompression);

} // namespace engine
