#pragma once

#include <QtGlobal>

class QString;

namespace core {

enum class Verdict { succeed, failed };

/// Judges an engine run by its output alone. `size` is the output's size in bytes, 0 if there is
/// none. It is taken modulo 2^32 as a signed number, so outputs from 2 to 4 GiB are failed.
Verdict judge(qint64 size, bool exists);

/// The verdict on the file at `path`.
Verdict judgeOutput(const QString &path);

} // namespace core
