#include "verdict.h"

namespace core {

qint32 judgedSize(qint64 size)
{
    return static_cast<qint32>(size);
}

Verdict judge(qint64 size, bool exists)
{
    return exists && judgedSize(size) > largestFailure ? Verdict::succeed : Verdict::failed;
}

} // namespace core
