#pragma once

#include <atomic>
#include <thread>

/// Counts the child processes of this process, zombies included, over and over in a thread of its
/// own, from construction to stop().
class EngineCount
{
public:
    EngineCount();
    ~EngineCount();
    EngineCount(const EngineCount &) = delete;
    EngineCount &operator=(const EngineCount &) = delete;

    void stop();

    /// The most that were there at once, and how often that was looked at.
    int most() const { return m_most; }
    int looks() const { return m_looks; }

    /// How many there are now.
    static int now();

private:
    void watch();

    std::atomic<bool> m_stopped = false;
    std::atomic<int> m_most = 0;
    std::atomic<int> m_looks = 0;
    std::thread m_thread;
};
