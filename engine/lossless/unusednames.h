#pragma once

#include "pieces.h"

namespace engine {

/// Drops names in the pages' resources that no content uses: fonts, images and forms, patterns,
/// shadings, graphics states and colour spaces. Resources that anything but pages refers to stay
/// whole; all do where a content can't be read to its end.
void dropUnusedNames(QPDF &document, const LosslessOptions &options);

} // namespace engine
