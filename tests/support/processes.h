#pragma once

#include <QtGlobal>

/// False if there is no such process. Never takes 0, which a process has that has ended, for the
/// whole of the test's process group.
bool sendSignal(qint64 process, int signal);
