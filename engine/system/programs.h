#pragma once

#include <string>

namespace engine {

/// The path of a program: the configured one if it is not empty, else the first of this name in
/// PATH. Empty if there is none in PATH.
std::string findProgram(const std::string &configured, const std::string &name);

} // namespace engine
