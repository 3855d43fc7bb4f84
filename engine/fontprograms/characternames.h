#pragma once

#include <string>
#include <vector>

namespace engine {

enum class BaseEncoding { Standard, MacRoman, WinAnsi };

/// What a code below 256 stands for; 0 if for nothing.
char32_t characterOf(BaseEncoding encoding, unsigned code);

/// The code of a character in Mac OS Roman; -1 if it has none.
int macCodeOf(char32_t character);

/// The characters that a glyph's name stands for by the Adobe Glyph List for New Fonts, or as
/// "uni20AC" and "u20AC"; more than one where two are drawn alike, and readers differ in their
/// choice. Empty if the name says nothing.
std::vector<char32_t> charactersOf(const std::string &name);

/// The names of that list for a character.
std::vector<std::string> namesOf(char32_t character);

} // namespace engine
