#pragma once

#include "child.h"
#include "limits.h"
#include "material.h"
#include "plan.h"

#include <functional>

namespace engine {

/// Makes the copy (material.draft) of what Ghostscript made (material.interpretation) and of the
/// original, in a process that can reach neither anything else nor corvgs, because the document may
/// be made to break its reader. Throws a Failure if there is to be no copy.
void finish(const Job &job, const Material &material, const Ending &ghostscript,
            const Limits &limits);

} // namespace engine
