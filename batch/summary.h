#pragma once

#include "options.h"
#include "refusal.h"

namespace batch {

/// Adds up the reports of `options.paths` and prints what they say: totals, failures, and what is
/// wrong between them: files that were done twice, or begun and never done. Throws Refusal.
ExitCode summarise(const Options &options);

} // namespace batch
