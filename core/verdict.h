#pragma once

#include <QtGlobal>

namespace core {

enum class Verdict { succeed, failed };

/// The largest output that counts as none, in bytes. An engine that gives up still leaves an empty
/// page of 2 to 3 KB.
constexpr qint32 largestFailure = 5000;

/// A size in bytes as it is judged: modulo 2^32 as a signed number.
qint32 judgedSize(qint64 size);

/// Judges an engine run by its output alone. `size` is the output's size in bytes, 0 if there is
/// none. It is judged as judgedSize(), so outputs from 2 to 4 GiB are failed.
Verdict judge(qint64 size, bool exists);

} // namespace core
