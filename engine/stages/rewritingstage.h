#pragma once

#include "candidates/choice.h"
#include "candidates/rewriting.h"
#include "pdf/pageview.h"
#include "proof.h"
#include "tasks/run.h"

#include <vector>

namespace engine {

/// A copy of what Ghostscript makes of the whole document.
class RewritingStage
{
public:
    explicit RewritingStage(const Run &run);

    /// Lets Ghostscript rewrite the open document, which is the run's own or has the same pages,
    /// with these words about it. Does not wait for it to end well.
    ChildResult rewrite(int document, const std::vector<std::string> &words) const;

    /// Makes the draft of the copy from what Ghostscript wrote. Throws a Failure if that is none.
    void make(const ChildResult &ghostscript);

    [[nodiscard]] const RewritingReport &report() const { return m_report; }

    /// How a reader shows the pages of the draft. Throws a Failure if it was not made well.
    [[nodiscard]] std::vector<PageView> views() const;

    /// Compares the draft with the original, all text and the pictures of all its pages. Throws a
    /// Failure that says why the draft can't become the copy.
    void prove(Proof &proof, const std::vector<PageView> &views) const;

    [[nodiscard]] Choice choice() const;

    /// Whether the line asks for passwords, or for a description that says something.
    [[nodiscard]] bool changesMuch() const;

    /// The draft becomes the copy, with its passwords.
    void finish() const;

private:
    [[nodiscard]] RewritingOrder orderFor(const ChildResult &ghostscript) const;

    const Run &m_run;
    Descriptor m_output;
    Descriptor m_file;
    Descriptor m_views;
    RewritingReport m_report;
};

} // namespace engine
