#pragma once

#include "refusal.h"

#include <QStringList>

namespace batch {

/// The whole of corvane-batch, for a command line without the program's name. Throws Refusal.
ExitCode run(const QStringList &arguments);

} // namespace batch
