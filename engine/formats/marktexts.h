#pragma once

#include <map>
#include <string>

namespace engine {

/// The keys ("/Title") of a document information mark and their texts, byte for byte, as PostScript
/// reads them: pairs of parentheses may be nested, a backslash escapes. A text that doesn't end is
/// left out.
std::map<std::string, std::string> markTexts(const std::string &mark);

} // namespace engine
