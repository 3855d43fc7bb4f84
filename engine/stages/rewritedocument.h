#pragma once

#include "run.h"

namespace engine {

/// Makes a PDF/A copy of what Ghostscript makes of the whole document. Throws a Failure if there is
/// to be no copy.
void rewriteDocument(const Run &run);

} // namespace engine
