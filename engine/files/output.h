#pragma once

#include "system/descriptor.h"

#include <string>

namespace engine {

/// The name of the copy, held from the start by an empty file that was not there before, so that
/// nobody else takes it and nothing that exists is touched. Removed again unless replaced.
class Output
{
public:
    explicit Output(const std::string &path);
    ~Output();
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    [[nodiscard]] int folder() const { return m_folder.get(); }
    [[nodiscard]] const std::string &folderPath() const { return m_folderPath; }

    /// Puts the file of that name in the same folder in the empty file's place, in one step.
    /// Refused if the empty file isn't the one that was made, or no longer empty.
    void replaceBy(const std::string &name);

private:
    [[nodiscard]] bool isUntouched() const;

    std::string m_path;
    std::string m_folderPath;
    std::string m_name;
    Descriptor m_folder;
    Descriptor m_placeholder;
};

} // namespace engine
