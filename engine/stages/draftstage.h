#pragma once

#include "candidates/choice.h"
#include "draftfiles.h"

#include <set>
#include <vector>

namespace engine {

/// How much of what makes a document smaller is done to a draft.
enum class Effort {
    Parts,  ///< images and fonts, and what is there twice or for nobody
    Pieces, ///< the latter alone
    Nothing ///< the document as it is, but for what the line asks for
};

/// The draft of the copy: made, made again with less, and finished.
class DraftStage
{
public:
    DraftStage(const Run &run, const AlbumStage &album);

    /// Makes the draft, in place of the one before. Throws a Failure if the document can't be read.
    void make(Effort effort, const std::set<int> &excluded);

    /// What the draft deserves as it is.
    [[nodiscard]] Choice choice() const;

    /// Whether the draft has to become the copy, because the original isn't what was asked for.
    [[nodiscard]] bool isNeeded() const;

    /// Whether the line asks for passwords, or for a description that says something.
    [[nodiscard]] bool changesMuch() const;

    /// The draft becomes the copy, with its passwords.
    void finish();

    [[nodiscard]] int file() const { return m_files.draft(); }

    /// The parts that were made smaller. Throws a Failure if the draft was not made well.
    [[nodiscard]] std::vector<TouchedPart> touched() const { return m_files.touched(); }
    [[nodiscard]] const DraftReport &report() const { return m_report; }

private:
    // Whether the copy is what was proven, byte for byte.
    [[nodiscard]] bool isFinished() const;

    [[nodiscard]] DraftOrder orderFor(Effort effort, const std::set<int> &excluded) const;

    const Run &m_run;
    DescriptionChanges m_description;
    DraftFiles m_files;
    DraftReport m_report;
};

} // namespace engine
