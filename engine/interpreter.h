#pragma once

#include "child.h"
#include "material.h"
#include "plan.h"
#include "settings.h"

#include <string>

namespace engine {

/// Ghostscript at work on the job, confined to the material, to what it reads of the system, and to
/// a folder for its temporary files. Its report is the number of pages that it wrote.
Work interpretation(const Job &job, const Material &material, const Settings &settings,
                    const std::string &workFolder);

} // namespace engine
