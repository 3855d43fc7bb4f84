#pragma once

#include "tasks/comparing.h"
#include "tasks/reading.h"

#include <functional>
#include <set>
#include <vector>

namespace engine {

struct ProofSettings
{
    ReaderPrograms readers;
    ReaderLimits limits = {};
    double resolution = 50; ///< in dpi; see comparisonResolution()
    int processes = 1;      ///< at work side by side
};

struct ProofResult
{
    /// False: the reader can't read the original, or isn't there. Nothing may be touched.
    bool readable = true;
    Findings findings = {};

    [[nodiscard]] bool isSound() const { return readable && findings.isNone(); }
};

/// An independent reader holds copies against their original. It works in confined children; what
/// it makes of the documents is compared in others.
class Proof
{
public:
    /// Children outlive this, and the open original. The function makes an empty file of ours, open
    /// for reading and writing.
    Proof(Children &children, ProofSettings settings, int original,
          std::function<Descriptor()> scratchFile);

    /// Starts reading the original: its text, and its pages, as indices, on which something will
    /// be made smaller as far as is known. Views are of all its pages, in order. Returns at once;
    /// goes on while anybody waits for a child. To be called once.
    void begin(std::vector<PageView> views, const std::set<int> &pages);

    /// Compares an open draft of the copy, without a password, in which these parts were made
    /// smaller: all text, and the pages of the parts. May be called again with another draft.
    /// Throws a Failure if corvgs was asked to end.
    ProofResult compare(int draft, const std::vector<TouchedPart> &parts,
                        Likeness likeness = Likeness::Same);

private:
    // What the reader makes of a document.
    struct Reading
    {
        Descriptor output;
        std::optional<std::size_t> child; // none: not started, or waited for
        bool succeeded = false;
    };

    struct DrawnOriginal
    {
        Drawing drawing;
        Reading reading;
    };

    struct DrawnCopy
    {
        Drawing drawing;
        Reading reading;
        std::size_t original; // index of the drawing of the same pages
    };

    struct Comparison
    {
        Descriptor answer;
        std::size_t child;
    };

    Reading readText(int document);
    Reading draw(int document, const Drawing &drawing);
    bool hasSucceeded(Reading &reading);
    bool isPage(int page) const;
    bool isPlanned(int page) const;
    std::vector<TouchedPart> partsOnNoPage(const std::vector<TouchedPart> &parts) const;
    void planOriginals(const std::set<int> &pages);
    void planMoreOriginals(const std::vector<TouchedPart> &parts);
    std::vector<DrawnCopy> copyPlan(const std::vector<TouchedPart> &parts) const;
    void drawCopies(int draft, const std::vector<TouchedPart> &parts);
    void settle(DrawnCopy &copy, const std::vector<TouchedPart> &parts);
    void compareTexts(Reading &text, const std::vector<TouchedPart> &parts);
    void startComparison(const Reading &copy, const Reading &original, const Comparing &work);
    void collect(Comparison &comparison);

    Children &m_children;
    ProofSettings m_settings;
    int m_original;
    std::function<Descriptor()> m_scratchFile;
    std::vector<PageView> m_views;
    Reading m_text;
    std::vector<DrawnOriginal> m_drawn;
    std::vector<Comparison> m_comparisons;
    Likeness m_likeness = Likeness::Same;
    ProofResult m_result;
};

} // namespace engine
