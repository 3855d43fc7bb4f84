#include "programs.h"

#include <cstdlib>
#include <sstream>
#include <unistd.h>

namespace engine {

std::string findProgram(const std::string &configured, const std::string &name)
{
    if (!configured.empty())
        return configured;
    const char *path = std::getenv("PATH");
    std::istringstream folders(path ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::string candidate = folder;
        candidate.append("/").append(name);
        if (!folder.empty() && access(candidate.c_str(), X_OK) == 0)
            return candidate;
    }
    return {};
}

} // namespace engine
