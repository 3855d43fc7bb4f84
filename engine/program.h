#pragma once

#include "compress.h"

namespace engine {

/// The whole of corvgs: carries out the command line and returns the exit status. The passwords in
/// argv are overwritten. Says in one line on standard error why there is no copy.
int runCommandLine(int argc, char *argv[], const Settings &settings);

} // namespace engine
