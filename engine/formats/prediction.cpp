#include "prediction.h"

#include <array>
#include <cstdlib>

namespace engine {

namespace {

using Byte = unsigned char;

// Neighbours of a sample; those beyond the picture are 0.
struct Neighbours
{
    int left;
    int above;
    int aboveLeft;
};

int paeth(const Neighbours &near)
{
    const int estimate = near.left + near.above - near.aboveLeft;
    const int left = std::abs(estimate - near.left);
    const int above = std::abs(estimate - near.above);
    const int aboveLeft = std::abs(estimate - near.aboveLeft);
    if (left <= above && left <= aboveLeft)
        return near.left;
    return above <= aboveLeft ? near.above : near.aboveLeft;
}

int predictedBy(std::size_t filter, const Neighbours &near)
{
    switch (filter) {
    case 1:
        return near.left;
    case 2:
        return near.above;
    case 3:
        return (near.left + near.above) / 2;
    case 4:
        return paeth(near);
    default:
        return 0;
    }
}

constexpr std::size_t filters = 5;

// Of the differences, those next to 0 on both sides are the likely ones.
unsigned costOf(Byte difference)
{
    return unsigned(std::abs(int(static_cast<signed char>(difference))));
}

class Rows
{
public:
    Rows(std::size_t rowSize, std::size_t pixelSize)
        : m_rowSize(rowSize)
        , m_pixelSize(pixelSize)
        , m_blank(rowSize, '\0')
    {
        m_candidates.fill(m_blank);
    }

    void append(const char *row, const char *above, std::string &result)
    {
        const std::size_t best = filterFor(row, above ? above : m_blank.data());
        result += char(best);
        result += m_candidates[best];
    }

private:
    std::size_t filterFor(const char *row, const char *above)
    {
        std::array<unsigned, filters> costs = {};
        for (std::size_t index = 0; index < m_rowSize; ++index) {
            const Neighbours near = neighboursOf(row, above, index);
            for (std::size_t filter = 0; filter < filters; ++filter) {
                const auto difference = Byte(Byte(row[index]) - predictedBy(filter, near));
                m_candidates[filter][index] = char(difference);
                costs[filter] += costOf(difference);
            }
        }
        std::size_t best = 0;
        for (std::size_t filter = 1; filter < filters; ++filter)
            best = costs[filter] < costs[best] ? filter : best;
        return best;
    }

    Neighbours neighboursOf(const char *row, const char *above, std::size_t index) const
    {
        const bool first = index < m_pixelSize;
        return {first ? 0 : Byte(row[index - m_pixelSize]), Byte(above[index]),
                first ? 0 : Byte(above[index - m_pixelSize])};
    }

    std::size_t m_rowSize;
    std::size_t m_pixelSize;
    std::string m_blank;
    std::array<std::string, filters> m_candidates;
};

} // namespace

std::string predicted(const std::string &bytes, std::size_t rowSize, std::size_t pixelSize)
{
    Rows rows(rowSize, pixelSize);
    std::string result;
    result.reserve(bytes.size() + bytes.size() / rowSize);
    for (std::size_t begin = 0; begin + rowSize <= bytes.size(); begin += rowSize) {
        const char *row = bytes.data() + begin;
        rows.append(row, begin == 0 ? nullptr : row - rowSize, result);
    }
    return result;
}

} // namespace engine
