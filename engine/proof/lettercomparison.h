#pragma once

#include <vector>

namespace engine {

/// Compares the letters of two texts in UTF-8, whose pages end with a form feed each: how many of
/// each there are on a page, in whatever order, blanks aside. Both files are read from their
/// beginning. Returns the pages, counted from 0, on which more than a hundredth of the original's
/// letters, and more than a few, are missing or added, or more than a few plain letters and digits;
/// those with any such letter if it is more than a hundredth of the whole text; and those that only
/// one of the texts has. Throws a std::runtime_error if a file can't be read.
std::vector<int> pagesOfOtherLetters(int copy, int original);

} // namespace engine
