#pragma once

#include <string>

namespace engine {

/// A line on standard output about the copy, in corvgs's name.
void say(const std::string &line);

} // namespace engine
