#include "progress.h"

#include <unistd.h>

namespace engine {

namespace {

int target = -1;

} // namespace

void reportProgressTo(int descriptor)
{
    target = descriptor;
}

// Without one of them the work goes on just as well.
void reportProgress()
{
    if (target >= 0) [[maybe_unused]]
        const ssize_t written = write(target, &progressMark, 1);
}

} // namespace engine
