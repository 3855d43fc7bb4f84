#pragma once

#include "process/child.h"
#include "process/limits.h"
#include "request/request.h"
#include "runfiles.h"

#include <functional>

namespace engine {

/// Makes the copy (files.draft) of what Ghostscript made (files.ghostscriptOutput) and of the
/// original, in a process that can reach neither anything else nor corvgs, because the document may
/// be made to break its reader. Throws a Failure if there is to be no copy.
void finish(const Request &request, const RunFiles &files, const ChildResult &ghostscript,
            const Limits &limits);

} // namespace engine
