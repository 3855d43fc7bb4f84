#pragma once

#include "candidates/keptdocument.h"
#include "pdf/pageview.h"
#include "tasks/run.h"

#include <set>
#include <vector>

namespace engine {

/// The images of the document on an album, and what Ghostscript makes of it. Ghostscript also reads
/// the document information mark, because it alone knows which values are valid.
class AlbumStage
{
public:
    /// The images are those that the options make smaller.
    AlbumStage(const Run &run, const ImageOptions &images);

    /// Looks into the document. Returns why libqpdf can't open it; empty if it can. Throws a
    /// Failure if it takes a password, or has no pages.
    std::string survey();

    /// Starts Ghostscript and does not wait.
    void start();

    /// Waits for the images that it makes, if there is an album. An album that it can't make out
    /// costs the images, not the copy. Throws a Failure as expectAccepted() does.
    void finishImages();

    /// Waits for its end. Throws a Failure if it refuses the mark or another value of the line.
    void expectAccepted();

    [[nodiscard]] const SurveyReport &report() const { return m_report; }

    /// The index of the album.
    [[nodiscard]] int index() const { return m_index.get(); }

    /// How a reader shows the pages of the document, and those on which an image may change, or all
    /// of a damaged one. Throw a Failure if the survey did not end well.
    [[nodiscard]] std::vector<PageView> views() const;
    [[nodiscard]] std::set<int> pagesToDraw() const;

    /// What Ghostscript made of it; -1: there is none.
    [[nodiscard]] int output() const { return m_isUsable ? m_output.get() : -1; }

private:
    void finish();
    std::size_t startGhostscript(bool withAlbum);

    const Run &m_run;
    ImageOptions m_images;
    Descriptor m_album;
    Descriptor m_index;
    Descriptor m_views;
    Descriptor m_parts;
    Descriptor m_output;
    SurveyReport m_report;
    std::size_t m_ghostscript = 0;
    bool m_isUsable = false;
    bool m_hasEnded = false;
};

} // namespace engine
