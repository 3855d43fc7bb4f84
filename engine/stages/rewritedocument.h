#pragma once

#include "run.h"

namespace engine {

/// Makes the copy of what Ghostscript makes of the whole document: PDF/A, or a document that nobody
/// else can open. Throws a Failure if there is to be no copy.
void rewriteDocument(const Run &run);

} // namespace engine
