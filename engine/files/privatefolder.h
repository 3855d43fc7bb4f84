#pragma once

#include "system/descriptor.h"

#include <filesystem>

namespace engine {

/// A folder of this run alone, in the system's folder for temporary files. It goes with the run;
/// what runs left behind that were killed is removed when the next folder is made.
class PrivateFolder
{
public:
    PrivateFolder();
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;

    /// Where the engine may write.
    [[nodiscard]] std::filesystem::path workFolder() const { return m_path / "work"; }

    /// An empty file, open for reading and writing, that is out of the engine's reach by name.
    [[nodiscard]] Descriptor openFile() const;

    /// The folder, open.
    [[nodiscard]] int descriptor() const { return m_lock.get(); }

    /// The bytes in workFolder().
    [[nodiscard]] std::uintmax_t workSize() const;

    /// From now on the file is removed with the folder, even by another run after a kill, until
    /// forget() is called. One at a time.
    void remember(const std::filesystem::path &file) const;
    void forget() const;

private:
    std::filesystem::path m_path;
    Descriptor m_lock;
};

} // namespace engine
