#include "stallwatch.h"

namespace engine {

std::string StallWatch::objection(Time burnt, const Progress &progress)
{
    if (progress.steps != m_progress.steps)
        m_lastStep = burnt;
    if (progress != m_progress)
        m_lastProgress = burnt;
    m_progress = progress;
    if (burnt - m_lastProgress >= m_stall)
        return "used up its time without getting on";
    if (burnt - m_lastStep >= m_step)
        return "used up its time on one page";
    return {};
}

} // namespace engine
