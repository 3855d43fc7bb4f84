#pragma once

#include "pdf/pageview.h"
#include "pdf/touched.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace engine {

/// What comparing a copy with its original has found.
struct Findings
{
    /// Numbers in the original of the images and fonts that may be to blame.
    std::set<int> failed;

    /// There is a difference where no part was made smaller.
    bool unexplained = false;

    [[nodiscard]] bool isNone() const { return failed.empty() && !unexplained; }
    void add(const Findings &more);
};

/// Compares the texts in two open files, as in pagesOfOtherText(). To blame are the fonts that show
/// on a page, else its images.
Findings compareTexts(int copy, int original, const std::vector<TouchedPart> &parts);

/// The pictures of pages in an open file, one after the other, as PictureFile reads them.
struct DrawnPages
{
    int file;
    std::vector<PageView> pages;
};

/// Compares the pages of the copy with the same ones of the original, which may have more; both are
/// in the order of the document. To blame is an image where it shows, elsewhere the fonts that show
/// on the page, else its images; and all of these if there is no picture.
Findings comparePictures(const DrawnPages &copy, const DrawnPages &original,
                         const std::vector<TouchedPart> &parts);

/// To be passed from one confined process to another.
std::string linesOf(const Findings &findings);

/// The findings again; nothing for a text that linesOf() does not write.
std::optional<Findings> findingsOf(const std::string &lines);

} // namespace engine
