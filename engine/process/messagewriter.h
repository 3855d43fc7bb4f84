#pragma once

#include <chrono>
#include <cstddef>
#include <string_view>

namespace engine {

/// Whoever reads what corvgs says, as long as he keeps up: who keeps it waiting for longer than
/// the patience in all is told nothing more.
class MessageWriter
{
public:
    /// Nobody.
    MessageWriter() = default;

    /// The default bears with a window that is busy, and with a terminal that scrolls.
    explicit MessageWriter(int descriptor,
                           std::chrono::milliseconds patience = std::chrono::seconds(5))
        : m_descriptor(descriptor)
        , m_patience(patience)
    {
    }

    void tell(std::string_view text);

private:
    [[nodiscard]] bool waitForRoom();

    int m_descriptor = -1;
    std::chrono::nanoseconds m_patience{0};
};

} // namespace engine
