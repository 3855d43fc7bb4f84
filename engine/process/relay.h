#pragma once

#include "messagewriter.h"
#include "phrasewatch.h"
#include "system/descriptor.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace engine {

/// A pipe from a child, read as fast as the child writes, so that the child never waits for
/// whoever reads what corvgs says.
class Relay
{
public:
    /// The most that is handed on of what one child says in one way. Who reads it has it in his
    /// memory, and no document has so much to be said about it.
    static constexpr std::uintmax_t handedOn = std::uintmax_t(16) << 10;

    /// Hands on the beginning of what comes from the child of that name, and says where it breaks
    /// off. Looks out for phrases in all of it.
    static Relay to(MessageWriter writer, const std::string &name,
                    const std::vector<std::string_view> &phrases);

    /// Keeps the first bytes of what comes, but for the marks of progress, which it counts.
    static Relay keeping(std::size_t bytes);

    [[nodiscard]] int readEnd() const { return m_readEnd.get(); }
    [[nodiscard]] int writeEnd() const { return m_writeEnd.get(); }
    void closeWriteEnd() { m_writeEnd.close(); }

    /// Takes what has come so far. After the last byte readEnd() is -1.
    void takeAll();

    /// The bytes that have come so far.
    [[nodiscard]] std::uintmax_t taken() const { return m_taken; }

    /// The marks of progress (keeping()) that have come so far.
    [[nodiscard]] std::uintmax_t marks() const { return m_marks; }

    /// Whether one of the phrases was that, and has come.
    [[nodiscard]] bool hasSeen(std::string_view phrase) const;
    [[nodiscard]] const std::string &kept() const { return m_kept; }

private:
    Relay();
    void take(std::string_view bytes);
    void keep(std::string_view bytes);
    void handOn(std::string_view bytes);

    Descriptor m_readEnd;
    Descriptor m_writeEnd;
    MessageWriter m_writer;
    std::size_t m_room = 0;
    std::string m_kept;
    std::string m_name;
    std::uintmax_t m_taken = 0;
    std::uintmax_t m_marks = 0;
    std::vector<PhraseWatch> m_watches;
};

} // namespace engine
