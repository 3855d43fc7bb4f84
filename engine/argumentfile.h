#pragma once

#include <string>
#include <vector>

namespace engine {

/// The text of a Ghostscript argument file (@file) that says these arguments, one a line.
std::string argumentFileText(const std::vector<std::string> &arguments);

} // namespace engine
