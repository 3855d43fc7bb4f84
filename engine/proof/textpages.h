#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace engine {

/// The pages of a text in an open file, which end with a form feed each, one after the other. The
/// file stays the caller's and is read from its beginning, whatever its position.
class TextPages
{
public:
    explicit TextPages(int file)
        : m_file(file)
    {
    }

    /// With its form feed; what follows the last one is a page of its own. Nothing at the end.
    /// Throws a std::runtime_error if the file can't be read.
    std::optional<std::string> next();

private:
    bool read();

    int m_file;
    off_t m_offset = 0;
    char m_bytes[1 << 16] = {};
    std::string_view m_unread;
};

} // namespace engine
