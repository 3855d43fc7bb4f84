#pragma once

#include "fileid.h"
#include "record.h"
#include "system/descriptor.h"
#include "system/failure.h"

#include <string>

namespace engine {

/// Exit status when the copy's name is somebody else's, at the start or in the end. The number is
/// that of <sysexits.h> for an output that can't be made.
constexpr int nameTakenStatus = 73;

/// The name of the copy, held from the start by an empty file that was not there before (the
/// placeholder), so that nobody else takes it and nothing that exists is touched. Removed again
/// unless replaced; what a kill leaves of it is on record.
class Output
{
public:
    /// Throws a Failure, with nameTakenStatus if there is something of that name.
    Output(const std::string &path, const Record &record);
    ~Output();
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    [[nodiscard]] int folder() const { return m_folder.get(); }
    [[nodiscard]] const std::string &folderPath() const { return m_folderPath; }

    /// Puts the file of that name in the same folder in the placeholder's place, in one step.
    /// Throws a Failure with nameTakenStatus if what has the name by now isn't the placeholder, or
    /// is no longer empty: it stays, whatever it is. A placeholder
    /// that was removed is no place for a copy either. Where the system can't exchange two files in
    /// one step (platform::exchangeFiles), what somebody puts there between the last look and the
    /// renaming, some microseconds, is lost.
    void replaceBy(const std::string &name);

private:
    [[nodiscard]] Failure nameTaken() const;
    void makePlaceholder();
    [[nodiscard]] bool isPlaceholder(const std::string &name) const;
    bool exchange(const std::string &name);

    std::string m_path;
    std::string m_folderPath;
    std::string m_name;
    Descriptor m_folder;
    const Record &m_record;
    Descriptor m_placeholder;
};

} // namespace engine
