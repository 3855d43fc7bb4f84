#pragma once

#include "tasks/run.h"

namespace engine {

/// Makes the copy of the document itself, with smaller images and fonts and without what nobody
/// needs, proven by an independent reader. Says on standard output what was made smaller. Throws a
/// Failure if there is to be no copy, above all where libqpdf can't open the document.
void keepDocument(const Run &run);

} // namespace engine
