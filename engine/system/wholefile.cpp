#include "wholefile.h"

#include "filesize.h"
#include "writing.h"

#include <unistd.h>

namespace engine {

std::string contentOf(int file)
{
    std::string content;
    content.reserve(sizeOf(file));
    char block[65536];
    for (;;) {
        const ssize_t count = pread(file, block, sizeof block, off_t(content.size()));
        if (count < 0)
            failWriting("a file can't be read");
        if (count == 0)
            return content;
        content.append(block, std::size_t(count));
    }
}

void setContent(int file, const std::string &bytes)
{
    if (ftruncate(file, 0) != 0 || lseek(file, 0, SEEK_SET) != 0)
        failWriting("a file can't be written");
    writeAll(file, bytes);
}

} // namespace engine
