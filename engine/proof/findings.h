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

/// How like its original a copy has to be.
enum class Likeness {
    Same,               ///< but for the images that were made smaller, it is the same document
    Rewritten,          ///< another program wrote it anew as a whole; see showsTheSame()
    RewrittenOtherFonts ///< the same, with fonts that the original leaves to the reader
};

/// Compares the texts in two open files, as in pagesOfOtherText(), or pagesOfOtherLetters() of a
/// rewriting. To blame are the fonts that show on a page, else its images.
Findings compareTexts(int copy, int original, const std::vector<TouchedPart> &parts,
                      Likeness likeness = Likeness::Same);

/// The pictures of pages in an open file, one after the other, as PictureFile reads them.
struct DrawnPages
{
    int file;
    std::vector<PageView> pages;
};

/// Compares the pages of the copy with the same ones of the original, which may have more; both are
/// in the order of the document. To blame is an image where it shows, elsewhere the fonts that show
/// on the page, else its images; and all of these if there is no picture, or on a page of a
/// rewriting.
Findings comparePictures(const DrawnPages &copy, const DrawnPages &original,
                         const std::vector<TouchedPart> &parts, Likeness likeness = Likeness::Same);

/// To be passed from one confined process to another.
std::string linesOf(const Findings &findings);

/// The findings again; nothing for a text that linesOf() does not write.
std::optional<Findings> findingsOf(const std::string &lines);

} // namespace engine
