#include "memorylimit.h"

#include <sys/resource.h>

namespace engine {

void limitMemory(std::uintmax_t bytes)
{
    const rlimit limit = {rlim_t(bytes), rlim_t(bytes)};
    setrlimit(RLIMIT_AS, &limit);
}

#ifdef __SANITIZE_ADDRESS__
void limitOwnMemory(std::uintmax_t) {}
#else
void limitOwnMemory(std::uintmax_t bytes)
{
    limitMemory(bytes);
}
#endif

} // namespace engine
