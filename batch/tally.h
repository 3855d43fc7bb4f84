#pragma once

#include "report/line.h"

#include <QString>

#include <vector>

namespace batch {

struct Failure
{
    QString input;
    QString reason;

    /// Both in one line.
    [[nodiscard]] QString text() const;
};

/// What a run has brought so far.
class Tally
{
public:
    void take(const Result &result);

    [[nodiscard]] qsizetype files() const { return m_succeeded + failed(); }
    [[nodiscard]] qsizetype failed() const { return static_cast<qsizetype>(m_failures.size()); }
    [[nodiscard]] qint64 saved() const { return m_before - m_after; }

    /// Such as "3 files: 2 compressed, 1 failed; 815.9 KB to 130.5 KB, 84 % saved".
    [[nodiscard]] QString text(qsizetype left = 0) const;
    /// The same as a JSON line.
    [[nodiscard]] QByteArray line(qsizetype left = 0) const;
    [[nodiscard]] const std::vector<Failure> &failures() const { return m_failures; }

private:
    qsizetype m_succeeded = 0;
    qint64 m_before = 0; // of what succeeded
    qint64 m_after = 0;
    std::vector<Failure> m_failures;
};

} // namespace batch
