#include "memorylimit.h"

#include "sanitizer.h"

#include <sys/resource.h>

namespace engine {

void limitMemory(std::uintmax_t bytes)
{
    const rlimit limit = {rlim_t(bytes), rlim_t(bytes)};
    setrlimit(RLIMIT_AS, &limit);
}

void limitOwnMemory(std::uintmax_t bytes)
{
    if (!hasSanitizer)
        limitMemory(bytes);
}

} // namespace engine
