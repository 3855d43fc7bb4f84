#pragma once

#include "processors.h"

#include <sys/types.h>

namespace batch::system {

/// For the child, between fork and exec: it ends with its parent, at once and whatever it does,
/// runs on those processors only (all, if empty), and is out of reach of the terminal's Ctrl+C,
/// which is for its parent to judge. Where the system has no such thing, it is left out.
void prepareEngine(pid_t parent, const Processors &processors);

} // namespace batch::system
