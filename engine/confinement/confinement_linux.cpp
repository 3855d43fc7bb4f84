#include "confinement.h"

#include "callfilter_linux.h"
#include "landlock_linux.h"
#include "processlimits.h"
#include "system/platform.h"

#include <sys/prctl.h>

namespace engine {

std::string confine(const AccessPolicy &policy)
{
    const std::string cores = platform::forbidCoreDumps() ? "no core dumps" : "core dumps";
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return "no confinement (the kernel has no no_new_privs), " + cores;
    // The one number that may be started is then never another file's.
    if (policy.program >= 0)
        limitDescriptors(policy.program);
    const std::string files = confineFiles(policy);
    return files + ", " + filterCalls(policy) + ", no new privileges, " + cores;
}

} // namespace engine
