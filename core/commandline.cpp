#include "commandline.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace core {

namespace {

QString quoted(const QString &path)
{
    return u'"' + path + u'"';
}

} // namespace

QString commandLine(const EngineRun &run)
{
    return quoted(run.engine) + run.switches + " -sOutputFile="_L1 + quoted(run.output) +
           " -f "_L1 + quoted(run.input) + run.markArgument;
}

QString markArgument(const QString &markFilePath)
{
    return QFile::exists(markFilePath) ? u' ' + quoted(markFilePath) : QString();
}

} // namespace core
