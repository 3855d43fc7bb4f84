#pragma once

#include <QString>

class QProcessEnvironment;

namespace batch {

/// One part of the list of files.
struct Shard
{
    int part = 1; ///< from 1 to `count`
    int count = 1;

    /// Whether the file at that place of the list, from 0, belongs to this part. Neighbours go to
    /// different parts: files of one folder are often of one kind and take the same time.
    [[nodiscard]] bool has(qsizetype place) const { return place % count == part - 1; }
};

/// Reads "I/N", or "auto" and "auto/N": the part of this task of a job array, as Slurm
/// (SLURM_ARRAY_TASK_ID) or Kubernetes (JOB_COMPLETION_INDEX, which says no number of parts) tell.
/// Throws Refusal.
Shard shardOf(const QString &text, const QProcessEnvironment &environment);

} // namespace batch
