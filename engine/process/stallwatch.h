#pragma once

#include "limits.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace engine {

/// What a child has to show for its time.
struct Progress
{
    std::uintmax_t bytes = 0; ///< in the files that it writes
    std::uintmax_t steps = 0; ///< pages, streams, ... that it reported as done

    bool operator==(const Progress &) const = default;
};

/// Tells a child that is slow from one that is lost, by what it does and the processor time that it
/// burns: waiting for a slow disk burns none, and a slow machine takes longer on the clock only.
///
/// It is lost when it has burnt Limits::stall since it last wrote or ended a step, or Limits::step
/// since it last ended a step, whatever it writes. Movement in what it reads is no progress. A long
/// document that goes on is never cut off, however long it takes: one of n pages may take n times
/// Limits::step at worst, and one that is lost from the start Limits::stall.
class StallWatch
{
public:
    using Time = std::chrono::duration<double>;

    explicit StallWatch(const Limits &limits)
        : m_stall(limits.stall)
        , m_step(limits.step)
    {
    }

    /// Takes the processor time burnt so far and what there is to show for it. Returns what to say
    /// of a child that is lost, to follow its name; empty if it isn't.
    std::string objection(Time burnt, const Progress &progress);

private:
    Time m_stall;
    Time m_step;
    Time m_lastProgress{0};
    Time m_lastStep{0};
    Progress m_progress;
};

} // namespace engine
