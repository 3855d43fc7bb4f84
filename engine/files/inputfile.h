#pragma once

#include "system/descriptor.h"

#include <string>
#include <sys/stat.h>

namespace engine {

/// A file that is only read, and is to stay what it is meanwhile.
class InputFile
{
public:
    /// Throws a Failure if there is no such file, or none that can be read.
    explicit InputFile(const std::string &path);

    [[nodiscard]] int descriptor() const { return m_file.get(); }

    /// Throws a Failure if the file has been written to since it was opened, by its size and its
    /// times of change. (A change of its name, mode or links looks the same.)
    void expectUnchanged() const;

private:
    std::string m_path;
    Descriptor m_file;
    struct stat m_entry = {};
};

} // namespace engine
