#include "draftstage.h"

#include "candidates/mark.h"
#include "finishedcopy.h"
#include "process/channels.h"
#include "system/filesize.h"

namespace engine {

DraftStage::DraftStage(const Run &run, const AlbumStage &album)
    : m_run(run)
    , m_description(changesOfMark(markText(run)))
    , m_files(run, album)
{
}

DraftOrder DraftStage::orderFor(Effort effort, const std::set<int> &excluded) const
{
    const CopyOptions &options = m_run.request.options;
    DraftOrder order = m_files.orderWithFiles();
    order.images = imageOptionsOf(m_run.request.switches);
    order.fonts = {.subset = options.subsetFonts, .compress = options.compressedFonts};
    order.lossless = {.standard = {}, .compressFonts = options.compressedFonts};
    order.description = m_description;
    order.excluded = excluded;
    order.withParts = effort == Effort::Parts;
    order.withPieces = effort != Effort::Nothing;
    order.leastSize = leastSizeFor(sizeOf(m_run.document));
    return order;
}

void DraftStage::make(Effort effort, const std::set<int> &excluded)
{
    m_report = m_files.make(orderFor(effort, excluded));
}

bool DraftStage::isNeeded() const
{
    return m_run.request.passwords.areSet() || m_report.described;
}

bool DraftStage::changesMuch() const
{
    return m_run.request.passwords.areSet() || writesText(m_description);
}

Choice DraftStage::choice() const
{
    return choiceOf({.original = sizeOf(m_run.document),
                     .draft = m_report.size,
                     .asked = isNeeded(),
                     .repaired = m_report.damaged});
}

bool DraftStage::isFinished() const
{
    return !m_run.request.passwords.areSet() && !m_report.isRestricted &&
           !m_run.request.options.leaveOutStandard14;
}

void DraftStage::finish()
{
    if (isFinished()) {
        copyDraft(m_run, file(), m_report.size);
        return;
    }
    FinishOrder order = finishOrder(m_run);
    order.original = documentChannel;
    order.leaveOutStandard14 = m_run.request.options.leaveOutStandard14;
    m_report.size = writeFinished(m_run, file(), order);
}

} // namespace engine
