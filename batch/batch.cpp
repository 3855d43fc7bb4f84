#include "batch.h"

#include "compress.h"
#include "options.h"
#include "output.h"
#include "summary.h"

namespace batch {

ExitCode run(const QStringList &arguments)
{
    const Options options = parseOptions(arguments);
    switch (options.command) {
    case Command::help:
        write(helpText().toLocal8Bit());
        return ExitCode::allDone;
    case Command::version:
        write("corvane-batch " CORVANE_VERSION "\n");
        return ExitCode::allDone;
    case Command::summarise:
        return summarise(options);
    case Command::compress:
        break;
    }
    return compress(options);
}

} // namespace batch
