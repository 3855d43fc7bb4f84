#pragma once

#include <optional>
#include <string>

namespace engine {

/// What is known after Ghostscript has ended. A missing number is one that could not be found out.
struct Evidence
{
    std::optional<int> pagesWritten; ///< as Ghostscript's device counted them
    std::optional<int> pagesInDocument;
    std::optional<int> pagesInCopy;
    bool warned = false; ///< Ghostscript says itself that its copy may be incorrect
};

/// Why the copy is not one that may be handed out; empty if it is.
std::string objectionTo(const Evidence &evidence);

} // namespace engine
