#pragma once

#include "request/passwords.h"

#include <cstdint>
#include <optional>
#include <qpdf/QPDF.hh>

namespace engine {

/// What a copy is locked with, and what it allows to those who open it.
struct Encryption
{
    Passwords passwords;
    int permissions; ///< the P of an encryption of revision 3
};

/// How a copy is written.
struct WriteOptions
{
    bool objectStreams = false; ///< those that the document has are kept; else there are none
    std::optional<Encryption> encryption;
};

/// Writes the document in place of what the open file holds, and opens that again. Streams stay as
/// they are. Returns the file's size; throws a std::exception if it isn't there whole, with all its
/// pages.
std::uintmax_t writeCopy(QPDF &document, int file, const WriteOptions &options);

/// Writes the bytes of another open file. Returns their number; throws a std::exception if not all
/// of them are there.
std::uintmax_t writeBytes(int source, int file);

} // namespace engine
