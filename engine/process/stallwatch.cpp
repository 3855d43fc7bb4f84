#include "stallwatch.h"

namespace engine {

bool StallWatch::isStalled(Time burnt, std::uintmax_t written)
{
    if (written != m_written) {
        m_written = written;
        m_lastGrowth = burnt;
    }
    return burnt - m_lastGrowth >= m_limit;
}

} // namespace engine
