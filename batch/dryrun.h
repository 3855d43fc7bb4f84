#pragma once

#include "options.h"
#include "refusal.h"
#include "work/scheduler.h"

namespace batch {

/// Prints "input -> output" for each copy that would be made, and writes nothing. Throws Refusal.
ExitCode dryRun(const Options &options, const Plan &plan);

} // namespace batch
