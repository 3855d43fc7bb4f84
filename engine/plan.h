#pragma once

#include "passwords.h"
#include "wishes.h"

#include <string>
#include <variant>
#include <vector>

namespace engine {

/// One document to compress.
struct Job
{
    std::string input;
    std::string output;
    std::string mark; ///< the document information mark; empty: none

    /// Ghostscript's arguments without its own name; files are named by their channels.
    std::vector<std::string> arguments;
    std::string argumentFile; ///< what is to be read from passwordChannel; empty: nothing
    std::string password;     ///< opens what Ghostscript writes; empty: none needed
    Passwords passwords;      ///< of the copy
    Wishes wishes;
};

/// Ghostscript gets the command line as it stands and corvgs is out of the way.
struct PassThrough
{
};

struct Refusal
{
    std::string reason;
};

using Plan = std::variant<PassThrough, Refusal, Job>;

/// What to do for a command line (without the program's own name). Touches nothing. A line for
/// pdfwrite that carries anything the window never sends is refused; the reason never repeats an
/// argument, because a piece of a password may be among them.
Plan planFor(const std::vector<std::string> &arguments);

} // namespace engine
