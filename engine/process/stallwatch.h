#pragma once

#include <chrono>
#include <cstdint>

namespace engine {

/// Tells an engine that is slow from one that is lost: the lost one burns processor time without a
/// byte of output. Waiting for a slow disk burns none.
class StallWatch
{
public:
    using Time = std::chrono::duration<double>;

    explicit StallWatch(Time limit)
        : m_limit(limit)
    {
    }

    /// Takes the processor time burnt so far and the bytes written so far; true when the engine
    /// has burnt the limit since the bytes last changed.
    bool isStalled(Time burnt, std::uintmax_t written);

private:
    Time m_limit;
    Time m_lastGrowth{0};
    std::uintmax_t m_written = 0;
};

} // namespace engine
