#include "proof.h"

#include "process/signals.h"
#include "proof/textcomparison.h"
#include "system/failure.h"

#include <algorithm>
#include <deque>
#include <stdexcept>
#include <utility>

namespace engine {

namespace {

void blame(const std::vector<TouchedPart> &parts, Findings &findings)
{
    findings.unexplained = findings.unexplained || parts.empty();
    for (const TouchedPart &part : parts)
        findings.failed.insert(part.object);
}

bool isAmong(int page, const Drawing &drawing)
{
    return std::any_of(drawing.pages.begin(), drawing.pages.end(),
                       [page](const PageView &view) { return view.page == page; });
}

std::vector<TouchedPart> partsIn(const Drawing &drawing, const std::vector<TouchedPart> &parts)
{
    std::vector<TouchedPart> there;
    for (const TouchedPart &part : parts) {
        if (isAmong(part.page, drawing))
            there.push_back(part);
    }
    return there;
}

void expectNoSignal(const ChildResult &result)
{
    if (result.interrupted)
        throw Failure("ended by a signal", 128 + signals::endRequest());
}

bool isGood(const ChildResult &result)
{
    expectNoSignal(result);
    return result.status == 0 && result.violation.empty();
}

} // namespace

Proof::Proof(Children &children, ProofSettings settings, int original,
             std::function<Descriptor()> scratchFile)
    : m_children(children)
    , m_settings(std::move(settings))
    , m_original(original)
    , m_scratchFile(std::move(scratchFile))
{
}

Proof::Reading Proof::readText(int document)
{
    Descriptor output = m_scratchFile();
    ChildTask task = textTask(m_settings.readers, document, output.get(), m_settings.limits);
    return {.output = std::move(output), .child = m_children.start(std::move(task))};
}

Proof::Reading Proof::draw(int document, const Drawing &drawing)
{
    Descriptor output = m_scratchFile();
    ChildTask task =
        drawingTask(m_settings.readers, drawing, document, output.get(), m_settings.limits);
    return {.output = std::move(output), .child = m_children.start(std::move(task))};
}

void Proof::begin(std::vector<PageView> views, const std::set<int> &pages)
{
    m_views = std::move(views);
    if (!areThere(m_settings.readers))
        return;
    m_text = readText(m_original);
    planOriginals(pages);
    const auto ahead = std::min(m_drawn.size(), std::size_t(m_settings.processes));
    for (std::size_t index = 0; index < ahead; ++index)
        m_drawn[index].reading = draw(m_original, m_drawn[index].drawing);
}

bool Proof::hasSucceeded(Reading &reading)
{
    if (reading.child)
        reading.succeeded = isGood(m_children.wait(*std::exchange(reading.child, {})));
    return reading.succeeded;
}

ProofResult Proof::compare(int draft, const std::vector<TouchedPart> &parts, Likeness likeness)
{
    m_likeness = likeness;
    m_result = {};
    if (!hasSucceeded(m_text))
        return {.readable = false};
    if (const auto elsewhere = partsOnNoPage(parts); !elsewhere.empty())
        blame(elsewhere, m_result.findings);
    Reading text = readText(draft);
    planMoreOriginals(parts);
    drawCopies(draft, parts);
    compareTexts(text, parts);
    for (Comparison &comparison : std::exchange(m_comparisons, {}))
        collect(comparison);
    return m_result;
}

bool Proof::isPage(int page) const
{
    return page >= 0 && std::size_t(page) < m_views.size();
}

std::vector<TouchedPart> Proof::partsOnNoPage(const std::vector<TouchedPart> &parts) const
{
    std::vector<TouchedPart> elsewhere;
    for (const TouchedPart &part : parts) {
        if (!isPage(part.page))
            elsewhere.push_back(part);
    }
    return elsewhere;
}

bool Proof::isPlanned(int page) const
{
    return std::any_of(m_drawn.begin(), m_drawn.end(), [page](const DrawnOriginal &original) {
        return isAmong(page, original.drawing);
    });
}

void Proof::planOriginals(const std::set<int> &pages)
{
    for (Drawing &drawing :
         drawingPlan(pages, m_views, m_settings.resolution, m_settings.processes))
        m_drawn.push_back({std::move(drawing), {}});
}

// Pages on which nobody expected a change.
void Proof::planMoreOriginals(const std::vector<TouchedPart> &parts)
{
    std::set<int> pages;
    for (const TouchedPart &part : parts) {
        if (isPage(part.page) && !isPlanned(part.page))
            pages.insert(part.page);
    }
    planOriginals(pages);
}

std::vector<Proof::DrawnCopy> Proof::copyPlan(const std::vector<TouchedPart> &parts) const
{
    std::vector<DrawnCopy> copies;
    for (std::size_t index = 0; index < m_drawn.size(); ++index) {
        std::set<int> pages;
        for (const TouchedPart &part : partsIn(m_drawn[index].drawing, parts))
            pages.insert(part.page);
        for (Drawing &drawing : drawingPlan(pages, m_views, m_settings.resolution, 1))
            copies.push_back({std::move(drawing), {}, index});
    }
    return copies;
}

void Proof::drawCopies(int draft, const std::vector<TouchedPart> &parts)
{
    std::deque<DrawnCopy> atWork;
    const auto settleFirst = [&] {
        settle(atWork.front(), parts);
        atWork.pop_front();
    };
    for (DrawnCopy &copy : copyPlan(parts)) {
        if (atWork.size() >= std::size_t(m_settings.processes))
            settleFirst();
        DrawnOriginal &original = m_drawn[copy.original];
        if (!original.reading.output)
            original.reading = draw(m_original, original.drawing);
        copy.reading = draw(draft, copy.drawing);
        atWork.push_back(std::move(copy));
    }
    while (!atWork.empty())
        settleFirst();
}

void Proof::settle(DrawnCopy &copy, const std::vector<TouchedPart> &parts)
{
    DrawnOriginal &original = m_drawn[copy.original];
    const std::vector<TouchedPart> there = partsIn(copy.drawing, parts);
    if (!hasSucceeded(original.reading)) {
        m_result.readable = false;
    } else if (!hasSucceeded(copy.reading)) {
        blame(there, m_result.findings);
    } else {
        startComparison(copy.reading, original.reading,
                        [this, &copy, &original, &there](int copyFile, int originalFile) {
                            return comparePictures({copyFile, copy.drawing.pages},
                                                   {originalFile, original.drawing.pages}, there,
                                                   m_likeness);
                        });
    }
}

// A reader that counts other pages than there are doesn't read the document as it is meant.
void Proof::compareTexts(Reading &text, const std::vector<TouchedPart> &parts)
{
    if (!hasSucceeded(text)) {
        blame(parts, m_result.findings);
        return;
    }
    startComparison(text, m_text, [this, &parts](int copy, int original) {
        if (std::size_t(countPages(original)) != m_views.size())
            throw std::runtime_error("another number of pages");
        return engine::compareTexts(copy, original, parts, m_likeness);
    });
}

// The work is done in a process that is started before this returns.
void Proof::startComparison(const Reading &copy, const Reading &original, const Comparing &work)
{
    Descriptor answer = m_scratchFile();
    const std::size_t child = m_children.start(comparingTask(
        copy.output.get(), original.output.get(), answer.get(), work, m_settings.limits.memory));
    m_comparisons.push_back({std::move(answer), child});
}

void Proof::collect(Comparison &comparison)
{
    const bool hasAnswered = isGood(m_children.wait(comparison.child));
    const auto findings = hasAnswered ? answerIn(comparison.answer.get()) : std::nullopt;
    if (findings)
        m_result.findings.add(*findings);
    else
        m_result.readable = false;
}

} // namespace engine
