#pragma once

#include <optional>
#include <string>

namespace engine {

enum class Trust {
    Foreign, ///< damage is repaired where that is possible
    Own      ///< damage makes it unreadable
};

/// The number of pages of a PDF file, which stays open; nothing if it can't be read. For hostile
/// files only to be called where a crash or an endless loop does no harm.
std::optional<int> countPages(int file, const std::string &password, Trust trust);

} // namespace engine
