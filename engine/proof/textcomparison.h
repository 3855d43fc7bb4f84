#pragma once

#include <vector>

namespace engine {

/// Compares two texts, whose pages end with a form feed each, byte by byte. Both files are read
/// from their beginning. Returns the pages, counted from 0, that are not the same; a page that only
/// one of them has is one of these, as is what follows the last form feed. Throws a
/// std::runtime_error if a file can't be read.
std::vector<int> pagesOfOtherText(int copy, int original);

/// The number of form feeds in a text. Throws as above.
int countPages(int text);

} // namespace engine
