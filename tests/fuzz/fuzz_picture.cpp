#include "input.h"

#include "engine/proof/picture.h"

#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const int file = memfd_create("pictures", MFD_CLOEXEC);
    promise(ftruncate(file, 0) == 0 && pwrite(file, data, size, 0) == ssize_t(size));
    engine::PictureFile pictures(file);
    try {
        while (const auto picture = pictures.next())
            promise(picture->samples.size() ==
                    std::size_t(picture->width) * std::size_t(picture->height) * 3);
    } catch (const std::runtime_error &) {
        return 0;
    }
    return 0;
}
