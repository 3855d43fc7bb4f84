#include "lastline.h"

namespace batch {

namespace {

constexpr qsizetype longest = 4096;
constexpr auto mark = "corvgs: ";

QString shown(const QByteArray &line)
{
    return QString::fromLocal8Bit(line);
}

} // namespace

void LastLine::take(const QByteArray &bytes)
{
    qsizetype begin = 0;
    for (auto lineEnd = bytes.indexOf('\n'); lineEnd >= 0; lineEnd = bytes.indexOf('\n', begin)) {
        end(m_begun + bytes.mid(begin, lineEnd - begin));
        m_begun.clear();
        begin = lineEnd + 1;
    }
    m_begun += bytes.mid(begin).left(longest - m_begun.size());
}

void LastLine::end(const QByteArray &line)
{
    const QByteArray trimmed = line.left(longest).trimmed();
    if (trimmed.isEmpty())
        return;
    m_last = trimmed;
    if (trimmed.startsWith(mark))
        m_own = trimmed;
}

QString LastLine::ownText() const
{
    return m_begun.startsWith(mark) ? shown(m_begun) : shown(m_own);
}

QString LastLine::text() const
{
    const QString own = ownText();
    return own.isEmpty() ? shown(m_begun.isEmpty() ? m_last : m_begun) : own;
}

} // namespace batch
