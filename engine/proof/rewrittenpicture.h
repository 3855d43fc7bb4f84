#pragma once

#include "picture.h"

namespace engine {

/// Whether a page that was written anew as a whole still shows the same: every small block, on its
/// own or moved by a pixel, is as bright as in the original and has nearly its colours. Pages that
/// differ by a pixel in size are compared where they overlap.
///
/// Lines are drawn anew and colours converted: at 50 dpi the worst of sound copies were 38, 22 and
/// 19 away in blocks of 4, 8 and 16 pixels, colours 64, 63 and 40. A missing line of text of 6
/// points is 43 to 68 away in the smallest blocks, a line of any width 63. With fonts that the
/// original leaves to the reader, which then are other ones, small print of a sound copy is 69, 25
/// and 12 away; a missing line is still 31 in blocks of 8.
bool showsTheSame(const Picture &copy, const Picture &original, bool hasOwnFonts);

} // namespace engine
