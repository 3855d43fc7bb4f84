#pragma once

#include "request/options.h"
#include "request/passwords.h"

#include <map>
#include <optional>
#include <string>

namespace engine {

/// What the copy is made of; files are open descriptors.
struct CopyOrder
{
    int document;
    int rewriting;       ///< what Ghostscript made of it
    int copy;            ///< open for reading and writing
    Passwords passwords; ///< of the copy
    int permissions;     ///< the P of an encryption of revision 2
    CopyOptions options;
    bool changes; ///< a mark, or passwords: without them the original itself may do
    std::map<std::string, std::string> marked; ///< texts of the document information mark
    std::optional<int> pagesWritten;           ///< as Ghostscript's device counted them
    bool warned;                               ///< by Ghostscript itself
};

/// Makes the copy: of the rewriting, if that is sound, complete and smaller than the document,
/// else of the document itself, without loss. Returns why there is none; empty if there is one.
/// For hostile documents only to be called where a crash or an endless loop does no harm.
std::string makeCopy(const CopyOrder &order);

} // namespace engine
