#pragma once

#include <optional>
#include <string>

namespace engine {

/// What decides whether a copy may have object streams.
struct ObjectStreamFacts
{
    std::string version;                 ///< of the original, with its catalogue's: "1.4"
    bool present = false;                ///< the original has them
    std::optional<std::string> standard; ///< that it claims: "PDF/A-1", ...
};

/// Whether object streams may be written, if they make the copy smaller: readers of PDF 1.4 don't
/// know them, and standards that build on it forbid them.
bool mayHaveObjectStreams(const ObjectStreamFacts &facts);

} // namespace engine
