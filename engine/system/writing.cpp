#include "writing.h"

#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace engine {

// One byte less than was asked for is no error yet: the next call says why.
void writeAll(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            failWriting("a file can't be written");
        if (count > 0)
            bytes.remove_prefix(std::size_t(count));
    }
}

void failWriting(const char *what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace engine
