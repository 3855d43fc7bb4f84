#pragma once

#include <cstddef>
#include <qpdf/QPDF.hh>

namespace engine {

/// The number of entries of a document's outline, on all levels.
std::size_t outlineEntries(QPDF &document);

/// Gives the copy the original's whole outline if it has fewer entries: Ghostscript 10.00 leaves
/// some out, above all those that lead to no page. Of their actions, those that lead to a place or
/// to an address stay.
void restoreOutline(QPDF &copy, QPDF &original);

} // namespace engine
