#include "halftone.h"

#include <algorithm>
#include <array>
#include <bit>

namespace engine {

namespace {

// So many rows, from all over the bitmap, tell enough.
constexpr std::uint32_t enoughRows = 256;

// How many pixels differ from the one that lies so many to the left.
using Differences = std::array<std::uint64_t, longestPeriod + 1>;

std::uint64_t wordAt(const std::uint8_t *row, std::size_t place)
{
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < 8; ++i)
        word = word << 8 | row[place + i];
    return word;
}

void count(Differences &differences, const std::uint8_t *row, std::size_t stride)
{
    for (std::size_t place = 8; place + 8 <= stride; place += 8) {
        const std::uint64_t before = wordAt(row, place - 8);
        const std::uint64_t word = wordAt(row, place);
        if ((before | word) == 0)
            continue;
        for (unsigned distance = 1; distance <= longestPeriod; ++distance) {
            const std::uint64_t shifted = word >> distance | before << (64 - distance);
            differences[distance] += std::uint64_t(std::popcount(word ^ shifted));
        }
    }
}

} // namespace

unsigned halftonePeriod(const Bitmap &bitmap)
{
    Differences differences = {};
    const std::uint32_t step = bitmap.height() / enoughRows + 1;
    for (std::uint32_t y = 0; y < bitmap.height(); y += step)
        count(differences, bitmap.row(y), bitmap.stride());

    // Letters differ the more, the further one looks. Only a screen has a dip after the rise.
    unsigned period = 0;
    double deepest = 1.25;
    std::uint64_t highest = 0;
    for (unsigned distance = 1; distance <= longestPeriod; ++distance) {
        const double dip =
            double(highest) / double(std::max<std::uint64_t>(differences[distance], 1));
        if (dip > deepest) {
            deepest = dip;
            period = distance;
        }
        highest = std::max(highest, differences[distance]);
    }
    // Nearer pixels are among the neighbours anyway.
    return period > 4 ? period : 0;
}

} // namespace engine
