#pragma once

#include "options.h"
#include "passwords.h"

#include <string>
#include <variant>
#include <vector>

namespace engine {

/// The permissions of a copy that allows everything.
inline constexpr int allPermissions = -4;

/// One document to compress.
struct Request
{
    std::string input;
    std::string output;
    std::string mark; ///< the document information mark; empty: none

    /// The line's own, as they stand.
    std::vector<std::string> switches;
    Passwords passwords;              ///< of the copy
    int permissions = allPermissions; ///< the P of an encryption of revision 2
    CopyOptions options;
};

/// Ghostscript gets the command line as it stands and corvgs is out of the way.
struct PassThrough
{
};

struct Refusal
{
    std::string reason;
};

using Plan = std::variant<PassThrough, Refusal, Request>;

/// What to do for a command line (without the program's own name). Touches nothing. A line for
/// pdfwrite that carries anything the window never sends is refused; the reason never repeats an
/// argument, because a piece of a password may be among them.
Plan planFor(const std::vector<std::string> &arguments);

} // namespace engine
