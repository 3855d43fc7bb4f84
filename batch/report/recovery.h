#pragma once

#include "line.h"

#include <QString>

#include <optional>

namespace batch {

/// Whether a whole copy lies there: a file that isn't empty. An engine gives the copy its name in
/// one step, when it is whole; until then the name is held by an empty file.
bool isWholeCopy(const QString &output);

/// Removes the empty file by which an engine that was killed held the name of its copy.
void removePlaceholder(const QString &output);

/// What became of a file whose engine was started by a run that was killed: the copy, if it is
/// there. None: it has to be done again, and its name is free.
std::optional<Result> recover(const QString &output, const QString &input);

} // namespace batch
