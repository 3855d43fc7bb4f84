#include "tally.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <cmath>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

QString savedText(qint64 before, qint64 after)
{
    if (after >= before)
        return u"nothing saved"_s;
    const auto share = static_cast<double>(before - after) / static_cast<double>(before);
    return u"%1 % saved"_s.arg(std::lround(100 * share));
}

} // namespace

void Tally::take(const Result &result)
{
    if (!result.succeeded) {
        m_failures.push_back({result.input, result.reason});
        return;
    }
    ++m_succeeded;
    m_before += result.before;
    m_after += result.after;
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
        text += u"; %1 to %2, %3"_s.arg(bytesText(m_before), bytesText(m_after),
                                        savedText(m_before, m_after));
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

QStringList Tally::failures() const
{
    QStringList lines;
    for (const Failure &failure : m_failures)
        lines.append(failure.input + ": "_L1 + failure.reason);
    return lines;
}

QString bytesText(qint64 bytes)
{
    constexpr const char *units[] = {"KB", "MB", "GB", "TB"};
    double value = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    while (std::abs(value) >= 999.95 && unit + 1 < std::size(units)) {
        value /= 1000;
        ++unit;
    }
    return QString::asprintf("%.1f %s", value, units[unit]);
}

} // namespace batch
