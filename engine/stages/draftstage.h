#pragma once

#include "albumstage.h"
#include "candidates/choice.h"

#include <set>
#include <string>

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

    /// The draft becomes the copy, with its passwords; or the original does, byte for byte.
    void finish();
    void takeOriginal();

    [[nodiscard]] int file() const { return m_file.get(); }

    /// The parts that were made smaller. Throws a Failure if the draft was not made well.
    [[nodiscard]] std::vector<TouchedPart> touched() const;
    [[nodiscard]] const DraftReport &report() const { return m_report; }

private:
    // Whether the copy is what was proven, byte for byte.
    [[nodiscard]] bool isFinished() const;
    void writeFinished();

    [[nodiscard]] DraftOrder orderFor(Effort effort, const std::set<int> &excluded) const;

    const Run &m_run;
    const AlbumStage &m_album;
    DescriptionChanges m_description;
    Descriptor m_file;
    Descriptor m_touched;
    DraftReport m_report;
};

} // namespace engine
