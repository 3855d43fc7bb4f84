#pragma once

#include <QString>

namespace core {

/// A file's size for the table, right-aligned in 14 characters, in KB or MB. Empty (no cell) if
/// there is nothing to show. `bytes` is taken modulo 2^32 as a signed number: nothing is shown for
/// a file of 2 to 4 GiB.
QString sizeText(qint64 bytes);

/// A size of any number of bytes for running text, in B, KB, MB or, from 10 on, GB.
QString briefSizeText(qint64 bytes);

} // namespace core
