#pragma once

#include "matrix.h"

#include <optional>
#include <string>
#include <vector>

namespace engine {

/// What a reader shows of a page.
struct PageView
{
    int page = 0;     ///< index from 0
    Box crop;         ///< in points, the page's unit applied
    int rotation = 0; ///< clockwise: 0, 90, 180 or 270
};

/// One line for each view, to be passed from one confined process to another.
std::string linesOf(const std::vector<PageView> &views);

/// The views again; nothing for a text that linesOf() does not write.
std::optional<std::vector<PageView>> viewsOf(const std::string &lines);

} // namespace engine
