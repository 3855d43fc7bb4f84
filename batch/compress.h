#pragma once

#include "options.h"
#include "refusal.h"

namespace batch {

/// Makes the copies that a command line asks for, or says which ones it would make. Nothing is
/// written before all that was asked for is known to make sense. Throws Refusal.
ExitCode compress(const Options &options);

} // namespace batch
