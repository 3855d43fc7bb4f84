#pragma once

#include "record.h"
#include "runfolder.h"
#include "system/descriptor.h"

#include <cstdint>
#include <filesystem>
#include <memory>

namespace engine {

/// A folder of this run alone, in the system's folder for temporary files; and a record of what the
/// run would leave behind elsewhere, where it outlives a restart of the system. Both go with the
/// run; what runs left behind that were killed is removed when the next folder is made.
class PrivateFolder
{
public:
    PrivateFolder();

    /// Where Ghostscript may write.
    [[nodiscard]] std::filesystem::path workFolder() const { return m_folder->path() / "work"; }

    /// An empty file, open for reading and writing, that Ghostscript can't open by name.
    [[nodiscard]] Descriptor openFile() const;

    /// The folder, open.
    [[nodiscard]] int descriptor() const { return m_folder->descriptor(); }

    /// The bytes in workFolder().
    [[nodiscard]] std::uintmax_t workSize() const;

    /// Of files outside the folder.
    [[nodiscard]] const Record &record() const { return m_record; }

private:
    using Folder = std::unique_ptr<RunFolder>;
    struct Folders
    {
        Folder own;
        Folder lasting; // null: the own one has to do
    };
    static Folders makeFolders();
    explicit PrivateFolder(Folders folders);

    Folder m_folder;
    Folder m_lasting;
    Record m_record;
};

} // namespace engine
