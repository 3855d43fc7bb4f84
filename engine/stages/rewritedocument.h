#pragma once

#include "tasks/run.h"

#include <string>

namespace engine {

/// Makes a PDF/A copy of what Ghostscript makes of the whole document, proven by an independent
/// reader; where that isn't there, says so on standard output. Throws a Failure if there is to be
/// no copy.
void rewriteDocument(const Run &run);

/// Makes the copy of a document that libqpdf can't open, for the given reason: what Ghostscript
/// makes of it, if that is proven; the original, if it is no larger. Throws a Failure if there is
/// to be no copy, above all where the reader isn't there or can't read the document.
void rewriteUnopened(const Run &run, const std::string &objection);

} // namespace engine
