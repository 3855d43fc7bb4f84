#pragma once

#include <QByteArray>
#include <QString>

namespace batch {

/// Finds the last line that begins with "corvgs: " in a stream of any length, of which it keeps
/// little. Ghostscript speaks in the same stream.
class LastLine
{
public:
    void take(const QByteArray &bytes);

    /// The line; without one, the last line of all. Empty if there was none.
    [[nodiscard]] QString text() const;
    /// The line, or nothing.
    [[nodiscard]] QString ownText() const;

private:
    void end(const QByteArray &line);

    QByteArray m_begun;
    QByteArray m_own;
    QByteArray m_last;
};

} // namespace batch
