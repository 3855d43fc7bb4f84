#include "diskwatch.h"

#include <algorithm>
#include <optional>

namespace engine {

namespace {

std::optional<std::uintmax_t> freeSpaceAt(const std::filesystem::path &folder)
{
    std::error_code error;
    const auto space = std::filesystem::space(folder, error);
    return error ? std::nullopt : std::optional(space.available);
}

} // namespace

DiskWatch::DiskWatch(const std::vector<std::filesystem::path> &folders, std::uintmax_t reserve)
    : m_reserve(reserve)
{
    for (const std::filesystem::path &folder : folders) {
        if (const auto space = freeSpaceAt(folder))
            m_disks.push_back({folder, *space});
    }
}

bool DiskWatch::isFillingUp() const
{
    return std::any_of(m_disks.begin(), m_disks.end(), [this](const Disk &disk) {
        const auto space = freeSpaceAt(disk.folder);
        return space && *space < m_reserve && *space + m_reserve <= disk.freeAtFirst;
    });
}

} // namespace engine
