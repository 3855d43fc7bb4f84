#pragma once

#include <map>
#include <string>

namespace engine {

/// What a ToUnicode CMap says: the letters (UTF-16BE) of each character code (its bytes). What
/// makes no sense is passed over; a range of more than 65,536 codes is cut there.
std::map<std::string, std::string> lettersOfCodes(const std::string &cmap);

} // namespace engine
