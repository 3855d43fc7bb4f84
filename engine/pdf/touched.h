#pragma once

#include "pageview.h"

#include <optional>
#include <string>
#include <vector>

namespace engine {

enum class PartKind { Image, Font };

/// One use, on one page, of a part that was made smaller.
struct TouchedPart
{
    PartKind kind = PartKind::Image;
    int object = 0; ///< its number in the original document
    int page = 0;   ///< index from 0

    /// In points, unrotated, before the crop is taken off; the whole page for fonts.
    double left = 0, bottom = 0, right = 0, top = 0;
};

/// A part that may change all that a page shows.
TouchedPart wholePage(PartKind kind, int object, const PageView &view);

/// One line for each part, to be passed from one confined process to another.
std::string linesOf(const std::vector<TouchedPart> &parts);

/// The parts again; nothing for a text that linesOf() does not write.
std::optional<std::vector<TouchedPart>> partsOf(const std::string &lines);

} // namespace engine
