#pragma once

#include <filesystem>
#include <utility>

namespace engine {

/// The files outside its own folders that a run may leave behind when it is killed.
enum class Recorded {
    Placeholder, ///< the empty file under the copy's name
    Draft        ///< the copy in the making, under a hidden name beside it
};

/// What the run that owns a RunFolder would leave behind, written down in it. It is no place that a
/// confined child reaches: what it names is removed.
class Record
{
public:
    /// The folder outlives the record; it is open, too.
    Record(std::filesystem::path folder, int descriptor)
        : m_folder(std::move(folder))
        , m_descriptor(descriptor)
    {
    }

    /// To be called before the file exists: there is then no moment at which a kill, or a power
    /// cut, leaves it behind for good. Throws a Failure if it can't be written down.
    void remember(Recorded file, const std::filesystem::path &path) const;

    /// To be called once the file exists: another one under its name is left alone from then on.
    void identify(Recorded file, int descriptor) const;

    void forget(Recorded file) const;

private:
    std::filesystem::path m_folder;
    int m_descriptor;
};

/// Removes the files that a killed run wrote down in its folder, as far as they are regular files
/// of ours, in the state in which a run leaves them: the placeholder and a file that was never
/// identified only if they are empty, an identified one only if it is still the same. A file that
/// somebody else has made or put under such a name, or written into, stays. (Between the last look
/// and the removal somebody could still write into an empty file; the system knows no way to remove
/// a file on condition.)
void clearRecorded(const std::filesystem::path &folder);

} // namespace engine
