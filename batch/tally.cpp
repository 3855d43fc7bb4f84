#include "tally.h"

#include "core/outcometext.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

// A report that is added up may name any sizes.
qint64 sum(qint64 one, qint64 other)
{
    return one + std::min(other, std::numeric_limits<qint64>::max() - one);
}

} // namespace

QString Failure::text() const
{
    return input + ": "_L1 + reason;
}

void Tally::take(const Result &result)
{
    if (!result.succeeded) {
        m_failures.push_back({result.input, result.reason});
        return;
    }
    ++m_succeeded;
    m_before = sum(m_before, result.before);
    m_after = sum(m_after, result.after);
}

QString Tally::text(qsizetype left) const
{
    const qsizetype all = files() + left;
    QString text = u"%1 %2: %3 compressed, %4 failed"_s.arg(all)
                       .arg(all == 1 ? u"file"_s : u"files"_s)
                       .arg(m_succeeded)
                       .arg(failed());
    if (left > 0)
        text += u", %1 left"_s.arg(left);
    if (m_succeeded > 0)
        text +=
            "; "_L1 + core::outcomeText({.original = m_before, .copy = m_after, .threshold = {}});
    return text;
}

QByteArray Tally::line(qsizetype left) const
{
    const QJsonObject object = {
        {u"event"_s, u"totals"_s},
        {u"files"_s, files() + left},
        {u"succeeded"_s, m_succeeded},
        {u"failed"_s, failed()},
        {u"left"_s, left},
        {u"before"_s, m_before},
        {u"after"_s, m_after},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace batch
