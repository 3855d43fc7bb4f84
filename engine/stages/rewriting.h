#pragma once

#include "process/child.h"
#include "request/request.h"
#include "runfiles.h"
#include "settings.h"

#include <string>

namespace engine {

/// Ghostscript at work on the request, confined to the files, to what it reads of the system, and
/// to a folder for its temporary files. Its report is the number of pages that it wrote.
ChildTask rewritingTask(const Request &request, const RunFiles &files, const Settings &settings,
                        const std::string &workFolder);

} // namespace engine
