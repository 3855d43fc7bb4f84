#include "processlimits.h"

#include <sys/resource.h>

namespace engine {

void limitProcessorTime(std::chrono::seconds time)
{
    const auto seconds = rlim_t(time.count());
    const rlimit limit = {seconds, seconds};
    setrlimit(RLIMIT_CPU, &limit);
}

void limitFileSize(std::uintmax_t bytes)
{
    const rlimit limit = {rlim_t(bytes), rlim_t(bytes)};
    setrlimit(RLIMIT_FSIZE, &limit);
}

void limitDescriptors(int number)
{
    const rlimit limit = {rlim_t(number), rlim_t(number)};
    setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace engine
