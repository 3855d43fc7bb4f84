#pragma once

#include "request/passwords.h"

#include <cstdint>
#include <optional>
#include <qpdf/QPDF.hh>
#include <string>

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
    bool objectStreams = false;    ///< those that the document has are kept; else there are none
    bool newObjectStreams = false; ///< there are as many as make the copy smaller
    std::optional<Encryption> encryption = {};

    /// The document whose encryption to take over with its passwords and permissions, which it was
    /// opened without; null: none.
    QPDF *restrictionsOf = nullptr;

    /// The version that the copy has at least: "1.4"; empty: the document's.
    std::string leastVersion = {};

    /// Up to so many bytes the copy is filled with blanks, which no reader minds.
    std::uintmax_t leastSize = 0;
};

/// Writes the document in place of what the open file holds, and opens that again. Streams stay as
/// they are. Returns the file's size; throws a std::exception if it isn't there whole, with all its
/// pages.
std::uintmax_t writeCopy(QPDF &document, int file, const WriteOptions &options);

/// The size of the file that writeCopy() would write.
std::uintmax_t copySize(QPDF &document, const WriteOptions &options);

/// Writes the bytes of another open file. Returns their number; throws a std::exception if not all
/// of them are there.
std::uintmax_t writeBytes(int source, int file);

} // namespace engine
