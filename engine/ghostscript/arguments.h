#pragma once

#include "request/request.h"

#include <string>
#include <vector>

namespace engine {

/// The arguments with which Ghostscript (without its own name) rewrites the whole document. Files
/// are named by their channels.
std::vector<std::string> rewritingArguments(const Request &request);

/// The arguments with which it rewrites an album of images, whose words those about the copy have
/// already become; without an album only the mark, whose values it refuses or not.
std::vector<std::string> albumArguments(std::vector<std::string> words, bool hasAlbum,
                                        bool hasMark);

/// The window's switches as far as Ghostscript knows them.
std::vector<std::string> writableSwitches(std::vector<std::string> words);

} // namespace engine
