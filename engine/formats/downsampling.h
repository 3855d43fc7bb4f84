#pragma once

#include "bitmap.h"

namespace engine {

/// A bitmap of this size, with one pixel for every square of so many (at least 1) pixels a side of
/// the other; squares may stand out at the right and at the bottom. Half-tones keep their greys: a
/// pixel's error goes to its neighbours. Where a square is all of one colour nothing is added to
/// it, so letters keep their edges.
std::optional<Bitmap> downsampled(const Bitmap &bitmap, std::uint32_t factor, std::uint32_t width,
                                  std::uint32_t height);

/// How many pixels of the large edge make one of the small one, if that is a whole number, 2 or
/// more, whatever became of the rest; 0 if it is not.
std::uint32_t factorOf(std::uint32_t large, std::uint32_t small);

/// Whether the small bitmap has one pixel of every such square of the other, the same one of each,
/// or the opposite colour of each.
enum class Subsample { No, Same, Opposite };
Subsample subsampleOf(const Bitmap &small, const Bitmap &bitmap, std::uint32_t factor);

} // namespace engine
