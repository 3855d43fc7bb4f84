#include "outcometext.h"

#include "sizetext.h"
#include "verdict.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace core {

namespace {

class Outcomes
{
    Q_DECLARE_TR_FUNCTIONS(Outcomes)
};

// At least 1 % is saved here, and something is left.
int percentSaved(double share)
{
    return std::min(static_cast<int>(std::lround(share)), 99);
}

QString changeText(qint64 original, qint64 copy)
{
    const double share =
        std::abs(100.0 * static_cast<double>(original - copy) / static_cast<double>(original));
    if (copy == original)
        return Outcomes::tr("nothing saved");
    if (copy < original)
        return share < 1 ? Outcomes::tr("less than 1 % saved")
                         : Outcomes::tr("%1 % saved").arg(percentSaved(share));
    return share < 1 ? Outcomes::tr("less than 1 % larger")
                     : Outcomes::tr("%1 % larger").arg(std::llround(share));
}

QString sizesText(std::optional<qint64> original, qint64 copy)
{
    if (original.value_or(0) <= 0)
        return Outcomes::tr("The copy has %1").arg(briefSizeText(copy));
    return Outcomes::tr("%1 to %2, %3")
        .arg(briefSizeText(*original), briefSizeText(copy), changeText(*original, copy));
}

} // namespace

std::optional<qint64> sizeOfFile(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() ? std::optional(file.size()) : std::nullopt;
}

QString outcomeText(const Outcome &outcome)
{
    if (!outcome.copy)
        return Outcomes::tr("No copy was made");
    const qint64 copy = *outcome.copy;
    if (outcome.threshold && copy <= *outcome.threshold)
        return Outcomes::tr("The copy has at most %1 bytes").arg(*outcome.threshold);
    // A judge by sizes sees no more than 32 bits of them.
    if (outcome.threshold && judgedSize(copy) <= *outcome.threshold)
        return Outcomes::tr("The copy is too large to be judged");
    return sizesText(outcome.original, copy);
}

} // namespace core
