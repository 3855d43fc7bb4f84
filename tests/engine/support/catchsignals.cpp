#include "catchsignals.h"

#include "engine/process/signals.h"

void catchSignals()
{
    engine::signals::catchAll();
}
