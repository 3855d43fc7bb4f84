#include "system.h"

#include <QThread>

#include <numeric>
#include <unistd.h>

namespace batch {

Processors usableProcessors()
{
    Processors processors(static_cast<std::size_t>(QThread::idealThreadCount()));
    std::iota(processors.begin(), processors.end(), 0);
    return processors;
}

namespace system {

void prepareEngine(pid_t, const Processors &)
{
    setpgid(0, 0);
}

} // namespace system
} // namespace batch
