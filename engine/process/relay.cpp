#include "relay.h"

#include "system/failure.h"

#include <algorithm>
#include <fcntl.h>

namespace engine {

namespace {

constexpr std::size_t pieceSize = 512;

} // namespace

Relay::Relay()
{
    int ends[2];
    if (pipe(ends) != 0)
        throw Failure::ofSystem("no pipe");
    m_readEnd = Descriptor(ends[0]);
    m_writeEnd = Descriptor(ends[1]);
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    for (const int end : ends)
        fcntl(end, F_SETFD, FD_CLOEXEC);
}

Relay Relay::to(MessageWriter writer, std::string_view phrase)
{
    Relay relay;
    relay.m_watch = PhraseWatch(phrase);
    relay.m_writer = writer;
    return relay;
}

Relay Relay::keeping(std::size_t bytes)
{
    Relay relay;
    relay.m_room = bytes;
    return relay;
}

void Relay::takeAll()
{
    char bytes[pieceSize];
    // A child that never stops talking must not keep corvgs from looking at the clock.
    for (int piece = 0; piece < 1000 && m_readEnd; ++piece) {
        const ssize_t count = read(readEnd(), bytes, sizeof bytes);
        if (count > 0)
            take(bytes, std::size_t(count));
        else if (count == 0 || (errno != EAGAIN && errno != EINTR))
            m_readEnd.close();
        else
            return;
    }
}

void Relay::take(const char *bytes, std::size_t count)
{
    m_watch.take({bytes, count});
    m_kept.append(bytes, std::min(count, m_room - m_kept.size()));
    m_writer.tell({bytes, count});
}

} // namespace engine
