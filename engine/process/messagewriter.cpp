#include "messagewriter.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace engine {

namespace {

// As much as a pipe that polls as writable takes without blocking.
constexpr std::size_t pieceSize = 512;

} // namespace

bool MessageWriter::waitForRoom()
{
    using std::chrono::steady_clock;
    pollfd room = {m_descriptor, POLLOUT, 0};
    for (;;) {
        const auto begin = steady_clock::now();
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(m_patience);
        const int count = poll(&room, 1, int(wait.count()));
        const int error = errno;
        m_patience -= std::min<std::chrono::nanoseconds>(m_patience, steady_clock::now() - begin);
        if (count > 0)
            return (room.revents & POLLOUT) != 0;
        if (count == 0 || error != EINTR)
            return false;
    }
}

void MessageWriter::tell(std::string_view text)
{
    while (m_descriptor >= 0 && !text.empty()) {
        const ssize_t count =
            waitForRoom() ? write(m_descriptor, text.data(), std::min(text.size(), pieceSize)) : -1;
        if (count < 0)
            m_descriptor = -1;
        else
            text.remove_prefix(std::size_t(count));
    }
}

} // namespace engine
