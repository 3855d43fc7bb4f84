#pragma once

#include <qpdf/QPDF.hh>

namespace engine {

/// Whether a page of the original that shows text has become one that shows none: Ghostscript
/// paints a page with transparency as one picture where the format allows no transparency.
bool losesText(QPDF &copy, QPDF &original);

/// Puts right what Ghostscript makes of letters that stand for several, in Arabic or as ligatures:
/// it gives a font's glyphs the meaning of quite other letters. False if that can't be put right.
bool restoreToUnicode(QPDF &copy, QPDF &original);

} // namespace engine
