#pragma once

#include "request/request.h"

#include <string>
#include <vector>

namespace engine {

/// The arguments with which Ghostscript (without its own name) rewrites the whole document. Files
/// are named by their channels.
std::vector<std::string> rewritingArguments(const Request &request);

} // namespace engine
