#pragma once

#include "fileid.h"
#include "output.h"
#include "record.h"
#include "system/descriptor.h"

#include <string>

namespace engine {

/// The copy in the making, in the output's folder but without a name as far as the file system
/// allows: no reader finds it, and it can't outlive a killed run.
class Draft
{
public:
    Draft(const Output &output, const Record &record);
    ~Draft();
    Draft(const Draft &) = delete;
    Draft &operator=(const Draft &) = delete;

    [[nodiscard]] int file() const { return m_file.get(); }

    /// The draft becomes the output, once it is safe on the disk.
    void publish(Output &output);

private:
    void giveName();
    bool take(const std::string &name);
    void save();

    const Record &m_record;
    int m_folder;
    std::string m_folderPath;
    std::string m_name;
    Descriptor m_file;
    std::optional<FileId> m_id;
};

} // namespace engine
