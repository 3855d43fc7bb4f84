#include "childprocess.h"

#include <QProcess>

#include <csignal>
#include <sys/prctl.h>

void endsWithTheTest(QProcess &process)
{
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
}
