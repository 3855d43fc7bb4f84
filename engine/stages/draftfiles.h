#pragma once

#include "albumstage.h"
#include "candidates/keptdocument.h"

#include <utility>
#include <vector>

namespace engine {

struct ConfinedFiles;

/// A draft of the document, and the list of the parts of it that were made smaller.
class DraftFiles
{
public:
    DraftFiles(const Run &run, const AlbumStage &album);

    /// An order with the channels of the document, its album and these files; all the rest is as a
    /// DraftOrder has it by default.
    [[nodiscard]] DraftOrder orderWithFiles() const;

    /// Makes the draft, in place of the one before. Throws a Failure if the document can't be read.
    DraftReport make(const DraftOrder &order);

    /// The parts that were made smaller. Throws a Failure if the draft was not made well.
    [[nodiscard]] std::vector<TouchedPart> touched() const;

    /// The open draft; takeDraft() leaves none behind.
    [[nodiscard]] int draft() const { return m_draft.get(); }
    Descriptor takeDraft() { return std::move(m_draft); }

private:
    [[nodiscard]] ConfinedFiles channels() const;

    const Run &m_run;
    const AlbumStage &m_album;
    Descriptor m_draft;
    Descriptor m_touched;
};

} // namespace engine
