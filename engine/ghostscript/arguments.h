#pragma once

#include "request/request.h"

#include <string>
#include <vector>

namespace engine {

/// The arguments with which Ghostscript (without its own name) rewrites the whole document. Files
/// are named by their channels.
std::vector<std::string> rewritingArguments(const Request &request);

/// The arguments with which it rewrites an album of images; the words are those for the album.
/// Without an album it still runs the mark, because it alone knows which values of a mark are
/// valid.
std::vector<std::string> albumArguments(std::vector<std::string> words, bool hasAlbum,
                                        bool hasMark);

/// The window's switches as far as Ghostscript knows them.
std::vector<std::string> writableSwitches(std::vector<std::string> words);

} // namespace engine
