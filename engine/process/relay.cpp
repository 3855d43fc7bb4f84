#include "relay.h"

#include "system/failure.h"
#include "system/progress.h"

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

Relay Relay::to(MessageWriter writer, const std::string &name,
                const std::vector<std::string_view> &phrases)
{
    Relay relay;
    relay.m_name = name;
    for (const std::string_view phrase : phrases)
        relay.m_watches.emplace_back(phrase);
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
            take({bytes, std::size_t(count)});
        else if (count == 0 || (errno != EAGAIN && errno != EINTR))
            m_readEnd.close();
        else
            return;
    }
}

void Relay::take(std::string_view bytes)
{
    for (PhraseWatch &watch : m_watches)
        watch.take(bytes);
    keep(bytes);
    handOn(bytes);
    m_taken += bytes.size();
}

void Relay::keep(std::string_view bytes)
{
    for (const char byte : bytes) {
        if (byte == progressMark)
            ++m_marks;
        else if (m_kept.size() < m_room)
            m_kept += byte;
    }
}

void Relay::handOn(std::string_view bytes)
{
    if (m_taken > handedOn)
        return;
    m_writer.tell(bytes.substr(0, handedOn - m_taken));
    if (m_taken + bytes.size() > handedOn)
        m_writer.tell("\n[" + m_name + " says more, which is left out]\n");
}

bool Relay::hasSeen(std::string_view phrase) const
{
    return std::any_of(m_watches.begin(), m_watches.end(), [&](const PhraseWatch &watch) {
        return watch.phrase() == phrase && watch.hasSeen();
    });
}

} // namespace engine
