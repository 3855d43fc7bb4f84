#pragma once

#include "../passwords.h"
#include "../wishes.h"

#include <map>
#include <optional>
#include <string>

namespace engine {

/// What the copy is made of; files are open descriptors.
struct CopyOrder
{
    int document;
    int interpretation;   ///< what Ghostscript made of it
    int copy;             ///< open for reading and writing
    std::string password; ///< opens the interpretation; empty: none needed
    Passwords passwords;  ///< of the copy
    Wishes wishes;
    std::map<std::string, std::string> marked; ///< texts of the document information mark
    std::optional<int> pagesWritten;           ///< as Ghostscript's device counted them
    bool doubted;                              ///< by Ghostscript itself
};

/// Makes the copy: of the interpretation, if that is sound, complete and smaller than the document,
/// else of the document itself, without loss. Returns why there is none; empty if there is one.
/// For hostile documents only to be called where a crash or an endless loop does no harm.
std::string makeCopy(const CopyOrder &order);

} // namespace engine
