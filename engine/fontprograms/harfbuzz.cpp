#include "harfbuzz.h"

#include <cstdint>

namespace engine {

namespace {

std::uint64_t numberAt(const std::string &bytes, std::size_t place)
{
    std::uint64_t number = 0;
    for (std::size_t end = place + 4; place < end; ++place)
        number = number << 8 | std::uint8_t(bytes[place]);
    return number;
}

} // namespace

Blob blobOf(const std::string &bytes, hb_memory_mode_t mode)
{
    return Blob(hb_blob_create(bytes.data(), unsigned(bytes.size()), mode, nullptr, nullptr));
}

std::string bytesOf(const Blob &blob)
{
    unsigned size = 0;
    const char *bytes = hb_blob_get_data(blob.get(), &size);
    return bytes ? std::string(bytes, size) : std::string();
}

bool hasAllTables(const std::string &program)
{
    constexpr std::size_t directory = 12;
    constexpr std::size_t entry = 16;
    if (program.size() < directory)
        return false;
    const std::size_t tables = numberAt(program, 4) >> 16;
    if (program.size() < directory + tables * entry)
        return false;
    for (std::size_t place = directory; place < directory + tables * entry; place += entry) {
        if (numberAt(program, place + 8) + numberAt(program, place + 12) > program.size())
            return false;
    }
    return true;
}

} // namespace engine
