#pragma once

#include "child.h"
#include "diskwatch.h"
#include "relay.h"
#include "stallwatch.h"

#include <array>
#include <chrono>
#include <sys/types.h>

namespace engine {

/// A child at work: what it says, and what it uses up. Ended when this goes.
class ChildProcess
{
public:
    ChildProcess(ChildTask task, const Limits &limits);
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    /// The pipes from it; readEnd() is -1 when all of one has come.
    std::array<Relay *, 3> relays() { return {&m_output, &m_errors, &m_report}; }

    /// Hands on what the child has said, and ends it where it has to be ended. To be called again
    /// and again.
    void look();

    /// Whether it has ended. It is not collected by that.
    [[nodiscard]] bool hasEnded() const;

    /// How it ended. To be called once, when it has.
    ChildResult result();

private:
    [[noreturn]] void become(pid_t parent) noexcept;
    void end() const;
    int collect();
    [[nodiscard]] std::uintmax_t written() const;
    [[nodiscard]] bool hasSaid(std::string_view phrase) const;
    std::string violation();

    ChildTask m_task;
    Relay m_output;
    Relay m_errors;
    Relay m_report;
    StallWatch m_stall;
    DiskWatch m_disk;
    std::chrono::steady_clock::time_point m_nextLook = std::chrono::steady_clock::now();
    ChildResult m_result;
    pid_t m_process = -1; // -1: collected
};

} // namespace engine
