#include "diskwatch.h"

#include <algorithm>
#include <optional>
#include <sys/statvfs.h>

namespace engine {

namespace {

std::optional<std::uintmax_t> freeSpaceAt(int file)
{
    struct statvfs disk = {};
    if (fstatvfs(file, &disk) != 0)
        return {};
    return std::uintmax_t(disk.f_bavail) * disk.f_frsize;
}

} // namespace

DiskWatch::DiskWatch(const std::vector<int> &files, std::uintmax_t reserve)
    : m_reserve(reserve)
{
    for (const int file : files) {
        if (const auto space = freeSpaceAt(file))
            m_disks.push_back({file, *space});
    }
}

bool DiskWatch::isFillingUp() const
{
    return std::any_of(m_disks.begin(), m_disks.end(), [this](const Disk &disk) {
        const auto space = freeSpaceAt(disk.file);
        return space && *space < m_reserve && *space + m_reserve <= disk.freeAtFirst;
    });
}

} // namespace engine
