#pragma once

#include "system/descriptor.h"

#include <filesystem>

namespace engine {

/// A folder of this run alone, which goes with it. Its owner holds a lock on it as long as it
/// lives: one that nobody holds was left by a run that was killed.
class RunFolder
{
public:
    /// Throws a Failure if there can't be one below the parent.
    explicit RunFolder(const std::filesystem::path &parent);
    ~RunFolder();
    RunFolder(const RunFolder &) = delete;
    RunFolder &operator=(const RunFolder &) = delete;

    [[nodiscard]] const std::filesystem::path &path() const { return m_path; }

    /// The folder, open.
    [[nodiscard]] int descriptor() const { return m_lock.get(); }

private:
    std::filesystem::path m_path;
    Descriptor m_lock;
};

/// Removes what killed runs of the same user have left below the parent: their folders, and what
/// their records name (clearRecorded).
void removeLeftRunFolders(const std::filesystem::path &parent);

} // namespace engine
