#include "enginecount.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

EngineCount::EngineCount()
    : m_thread([this] { watch(); })
{
}

EngineCount::~EngineCount()
{
    stop();
}

void EngineCount::stop()
{
    m_stopped = true;
    if (m_thread.joinable())
        m_thread.join();
}

// A sampling interval, not a wait for something.
void EngineCount::watch()
{
    while (!m_stopped) {
        m_most = std::max(m_most.load(), now());
        ++m_looks;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

int EngineCount::now()
{
    int count = 0;
    std::error_code gone;
    for (const auto &task : std::filesystem::directory_iterator("/proc/self/task", gone)) {
        std::ifstream children(task.path() / "children");
        count += static_cast<int>(std::distance(std::istream_iterator<int>(children), {}));
    }
    return count;
}
