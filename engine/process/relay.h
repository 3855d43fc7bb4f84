#pragma once

#include "messagewriter.h"
#include "phrasewatch.h"
#include "system/descriptor.h"

#include <cstddef>
#include <string>

namespace engine {

/// A pipe from a child, read as fast as the child writes, so that the child never waits for
/// whoever reads what corvgs says.
class Relay
{
public:
    /// Hands on what comes, and looks out for a phrase in it (empty: none).
    static Relay to(MessageWriter writer, std::string_view phrase = {});

    /// Keeps the first bytes of what comes.
    static Relay keeping(std::size_t bytes);

    [[nodiscard]] int readEnd() const { return m_readEnd.get(); }
    [[nodiscard]] int writeEnd() const { return m_writeEnd.get(); }
    void closeWriteEnd() { m_writeEnd.close(); }

    /// Takes what has come so far. After the last byte readEnd() is -1.
    void takeAll();

    [[nodiscard]] bool hasSeenPhrase() const { return m_watch.hasSeen(); }
    [[nodiscard]] const std::string &kept() const { return m_kept; }

private:
    Relay();
    void take(const char *bytes, std::size_t count);

    Descriptor m_readEnd;
    Descriptor m_writeEnd;
    MessageWriter m_writer;
    std::size_t m_room = 0;
    std::string m_kept;
    PhraseWatch m_watch{{}};
};

} // namespace engine
