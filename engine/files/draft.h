#pragma once

#include "output.h"
#include "privatefolder.h"
#include "system/descriptor.h"

#include <string>

namespace engine {

/// Whether a file name is one that a draft may have.
bool isDraftName(const std::string &name);

/// The copy in the making, in the output's folder but without a name as far as the file system
/// allows: no reader finds it, and it can't outlive a killed run.
class Draft
{
public:
    Draft(const Output &output, const PrivateFolder &privateFolder);
    ~Draft();
    Draft(const Draft &) = delete;
    Draft &operator=(const Draft &) = delete;

    [[nodiscard]] int file() const { return m_file.get(); }

    /// The draft becomes the output, once it is safe on the disk.
    void publish(Output &output);

private:
    void giveName(bool unnamed);
    void save() const;

    const PrivateFolder &m_privateFolder;
    int m_folder;
    std::string m_folderPath;
    std::string m_name;
    Descriptor m_file;
};

} // namespace engine
