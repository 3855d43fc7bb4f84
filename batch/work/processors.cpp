#include "processors.h"

#include <QFile>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

std::optional<double> ratio(const QByteArray &granted, const QByteArray &period)
{
    const double time = granted.toDouble();
    const double outOf = period.toDouble();
    return time > 0 && outOf > 0 ? std::optional(time / outOf) : std::nullopt;
}

// "max 100000" or "150000 100000"; in version 1 two files, and -1 for no limit.
std::optional<double> quotaOfFolder(const QString &folder)
{
    const QList<QByteArray> both = contentOf(folder + "/cpu.max"_L1).split(' ');
    if (const auto quota = ratio(both.value(0), both.value(1)))
        return quota;
    return ratio(contentOf(folder + "/cpu.cfs_quota_us"_L1),
                 contentOf(folder + "/cpu.cfs_period_us"_L1));
}

std::optional<double> tighter(std::optional<double> one, std::optional<double> other)
{
    return one && other ? std::min(*one, *other) : one ? one : other;
}

// From the group up to the mount. Inside a container the group's path may lie outside of what is
// mounted: then only the mount itself is there to be read.
std::optional<double> quotaUpwards(const QString &mount, QString group)
{
    std::optional<double> quota = quotaOfFolder(mount);
    for (; group.size() > 1; group.truncate(group.lastIndexOf(u'/')))
        quota = tighter(quota, quotaOfFolder(mount + group));
    return quota;
}

// "0::/path" is version 2, "4:cpu,cpuacct:/path" version 1.
std::optional<double> quotaOfLine(const QByteArray &line, const QString &mount)
{
    const auto controllersEnd = line.indexOf(':', line.indexOf(':') + 1);
    const QByteArray controllers = line.left(controllersEnd).mid(line.indexOf(':') + 1);
    const QString group = QString::fromLocal8Bit(line.mid(controllersEnd + 1));
    if (controllers.isEmpty())
        return quotaUpwards(mount, group);
    if (!controllers.split(',').contains("cpu"))
        return std::nullopt;
    return quotaUpwards(mount + u'/' + QString::fromLatin1(controllers), group);
}

} // namespace

std::optional<double> processorQuota()
{
    return processorQuota(contentOf(u"/proc/self/cgroup"_s), u"/sys/fs/cgroup"_s);
}

std::optional<double> processorQuota(const QByteArray &groups, const QString &mount)
{
    std::optional<double> quota;
    for (const QByteArray &line : groups.split('\n'))
        quota = tighter(quota, quotaOfLine(line, mount));
    return quota;
}

int defaultJobs(std::size_t processors, std::optional<double> quota)
{
    const auto count = static_cast<double>(processors);
    return static_cast<int>(std::max(1.0, std::min(count, std::ceil(quota.value_or(count)))));
}

std::vector<Processors> shares(const Processors &processors, int jobs)
{
    const auto count = static_cast<std::size_t>(jobs);
    std::vector<Processors> shares(count);
    for (std::size_t i = 0; i < std::max(count, processors.size()); ++i) {
        if (count >= processors.size())
            shares[i].push_back(processors[i % processors.size()]);
        else
            shares[i * count / processors.size()].push_back(processors[i]);
    }
    return shares;
}

} // namespace batch
