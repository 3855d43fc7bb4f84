#pragma once

#include "run.h"

#include <optional>
#include <string>
#include <vector>

namespace engine {

/// What Ghostscript finds open; -1 is none.
struct GhostscriptFiles
{
    int document = -1;
    int mark = -1;
    int output = -1;
};

/// Ghostscript at work with these arguments, its own name left out, confined to these files, to
/// what it reads of the system, and to the folder for its temporary files.
ChildTask ghostscriptTask(const std::vector<std::string> &arguments, const GhostscriptFiles &files,
                          const Run &run);

/// The pages that its device reported; nothing if it did not come to that.
std::optional<int> pagesWritten(const ChildResult &ghostscript);

} // namespace engine
