#pragma once

#include "pdf/pageview.h"

#include <cstdint>
#include <set>
#include <vector>

namespace engine {

/// Pages that one process draws, one after the other, at one resolution.
struct Drawing
{
    double resolution = 0; ///< in dpi
    std::vector<PageView> pages;

    /// The most bytes of pictures, as PictureFile reads them, that the pages can take.
    [[nodiscard]] std::uintmax_t mostBytes() const;
};

/// The resolution, in dpi, at which images are compared that a line makes smaller, for the lowest
/// that it asks for (0: for none). Three pixels of an image for each of a picture leave nothing of
/// a sampling's faults; at 50 dpi, 10 points are seven pixels.
double comparisonResolution(double lowestAsked);

/// Splits the pages in the set among so many processes or more: none draws so many that their
/// pictures would fill a disk. A page between two of the set may be drawn as well. A large page is
/// drawn on its own, smaller. Views are of all pages of the document, in order.
std::vector<Drawing> drawingPlan(const std::set<int> &pages, const std::vector<PageView> &views,
                                 double resolution, int processes);

} // namespace engine
