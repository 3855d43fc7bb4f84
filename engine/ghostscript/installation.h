#pragma once

#include <string>
#include <vector>

namespace engine {

/// The path of Ghostscript: the configured one if it is not empty, else the first gs in PATH.
/// Empty if there is none in PATH.
std::string findGhostscript(const std::string &configured);

/// What Ghostscript reads of the system: libraries, its own files, fonts, colour profiles. Home is
/// the user's home folder; only the fonts in it are within policy.
std::vector<std::string> systemFilesOf(const std::string &ghostscript, const std::string &home);

} // namespace engine
