#pragma once

#include "../passwords.h"

#include <cstdint>
#include <qpdf/QPDF.hh>

namespace engine {

/// How a copy is written.
struct Form
{
    bool objectStreams = false; ///< those that the document has are kept; else there are none
    QPDF *locked = nullptr; ///< the document whose permissions to take over; null: no encryption
    Passwords passwords;
};

/// Writes the document in place of what the open file holds. Streams stay as they are. Returns the
/// file's size; throws a std::exception if it can't be written.
std::uintmax_t writeCopy(QPDF &document, int file, const Form &form);

/// The same for the bytes of another open file.
std::uintmax_t writeBytes(int source, int file);

} // namespace engine
