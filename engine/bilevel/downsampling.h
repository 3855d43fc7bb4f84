#pragma once

#include "bitmap.h"

namespace engine {

/// A bitmap of this size, with one pixel for every square of so many (at least 1) pixels a side of
/// the other; squares may stand out at the right and at the bottom. Half-tones keep their greys: a
/// pixel's error goes to its neighbours. Where a square is all of one colour nothing is added to
/// it, so letters keep their edges.
std::optional<Bitmap> downsampled(const Bitmap &bitmap, std::uint32_t factor, std::uint32_t width,
                                  std::uint32_t height);

/// A bitmap of this size, with one pixel of those that each stands for; nothing if it would have
/// more, or none.
std::optional<Bitmap> subsampled(const Bitmap &bitmap, std::uint32_t width, std::uint32_t height);

} // namespace engine
