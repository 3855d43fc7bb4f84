#include "say.h"

#include <cstdio>

namespace engine {

void say(const std::string &line)
{
    std::printf("corvgs: %s\n", line.c_str());
    std::fflush(stdout);
}

} // namespace engine
