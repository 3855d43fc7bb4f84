#pragma once

#include <QString>

namespace core {

/// The pieces of one engine run. Paths are bare; `switches` and `markArgument` are empty or begin
/// with a blank.
struct EngineRun
{
    QString engine;
    QString switches;
    QString output;
    QString input;
    QString markArgument;
};

/// The run as one line, for a splitter that breaks at blanks outside double quotes. Paths are
/// quoted and not escaped, so a path that holds a double quote arrives without it, and in pieces at
/// its blanks: that run fails, unless what is left names another file, which is then its input.
QString commandLine(const EngineRun &run);

/// The last argument of the line: the quoted path of the document information mark file behind a
/// blank, or nothing as long as there is no such file.
QString markArgument(const QString &markFilePath);

} // namespace core
