#include "processes.h"

#include <csignal>

bool sendSignal(qint64 process, int signal)
{
    return process > 0 && kill(static_cast<pid_t>(process), signal) == 0;
}
