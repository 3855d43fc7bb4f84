#pragma once

#include <qpdf/QPDF.hh>

namespace engine {

/// Gives those pages of the copy that have fewer links than in the original all of theirs again, as
/// far as the page lies in the copy as it does in the original. Printable links are what PDF/A
/// wants; they look the same. The copy opens where the original does.
void restoreLinks(QPDF &copy, QPDF &original, bool printable);

/// Whether links or outline entries lead elsewhere in the copy than in the original: Ghostscript
/// leaves their numbers as they are, on pages that it moves, turns or enlarges, too.
bool misleadsLinks(QPDF &copy, QPDF &original);

} // namespace engine
