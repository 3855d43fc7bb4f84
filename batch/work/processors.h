#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace batch {

/// Numbers of processors, as the system counts them.
using Processors = std::vector<int>;

/// Those that this process may run on.
Processors usableProcessors();

/// How many processors' time the control groups of this process grant, such as 1.5; none: all.
std::optional<double> processorQuota();

/// The same from what /proc/self/cgroup says and from the folder where the groups are mounted. The
/// tightest limit of a group and those around it counts, of both versions of control groups.
std::optional<double> processorQuota(const QByteArray &groups, const QString &mount);

/// Engines side by side: one for each processor, but no more than the quota keeps busy. At least 1.
int defaultJobs(std::size_t processors, std::optional<double> quota);

/// The share of each of so many engines. All have as many as possible, neighbours together; where
/// there are more engines than processors, several share one.
std::vector<Processors> shares(const Processors &processors, int jobs);

} // namespace batch
