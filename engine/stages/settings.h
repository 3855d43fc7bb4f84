#pragma once

#include "process/limits.h"

#include <string>

namespace engine {

struct Settings
{
    std::string ghostscript; ///< path of the executable
    Limits limits;
};

} // namespace engine
