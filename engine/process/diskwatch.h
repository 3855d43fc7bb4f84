#pragma once

#include <cstdint>
#include <vector>

namespace engine {

/// Keeps a child from filling the disk. It sees what no sum of file sizes does: files that were
/// removed while open.
class DiskWatch
{
public:
    /// Takes note of the free space that there is now on the disks that these files lie on, which
    /// stay open.
    DiskWatch(const std::vector<int> &files, std::uintmax_t reserve);

    /// True when somewhere less than the reserve is free, and at least as much has gone since the
    /// beginning. On a disk that was almost full before, a small copy is nobody's fault.
    [[nodiscard]] bool isFillingUp() const;

private:
    struct Disk
    {
        int file;
        std::uintmax_t freeAtFirst;
    };

    std::vector<Disk> m_disks;
    std::uintmax_t m_reserve;
};

} // namespace engine
