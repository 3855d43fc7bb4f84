#pragma once

#include "proof.h"
#include "tasks/run.h"

namespace engine {

/// How copies of this run are proven, at a resolution below the one that its line asks for.
ProofSettings proofSettings(const Run &run);

} // namespace engine
