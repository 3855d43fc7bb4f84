#include "verdict.h"

#include <QFileInfo>

namespace core {

namespace {

// An engine that gives up still leaves an empty page of 2 to 3 KB: an output this small is none.
constexpr qint32 smallestOutput = 5001;

} // namespace

Verdict judge(qint64 size, bool exists)
{
    if (static_cast<qint32>(size) < smallestOutput)
        return Verdict::failed;
    return exists ? Verdict::succeed : Verdict::failed;
}

Verdict judgeOutput(const QString &path)
{
    const QFileInfo output(path);
    return judge(output.size(), output.exists());
}

} // namespace core
