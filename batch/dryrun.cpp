#include "dryrun.h"

#include "core/outputname.h"
#include "output.h"
#include "report/history.h"

#include <QFileInfo>
#include <QSet>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

History earlierRuns(const Options &options)
{
    const bool hasReport = options.resume && QFileInfo::exists(*options.report);
    return hasReport ? readReport(*options.report) : History();
}

void say(const Options &options, const QString &input, const QString &output)
{
    write(options.json ? startLine(input, output)
                       : (input + " -> "_L1 + output + u'\n').toLocal8Bit());
}

} // namespace

ExitCode dryRun(const Options &options, const Plan &plan)
{
    const History history = earlierRuns(options);
    QSet<QString> given;
    bool allCanBeTried = true;
    for (const InputFile &file : plan.files) {
        if (history.results.contains(file.path))
            continue;
        if (!file.problem.isEmpty()) {
            complain(file.path + ": "_L1 + file.problem);
            allCanBeTried = false;
            continue;
        }
        const QString output =
            core::freeOutputPath(plan.folderOf(file), file.path, [&given](const QString &path) {
                return given.contains(path) || core::fileSystemEntryExists(path);
            });
        given.insert(output);
        say(options, file.path, output);
    }
    return allCanBeTried ? ExitCode::allDone : ExitCode::someFailed;
}

} // namespace batch
