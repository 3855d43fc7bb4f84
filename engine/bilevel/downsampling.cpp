#include "downsampling.h"

#include <algorithm>
#include <bit>
#include <deque>

namespace engine {

namespace {

bool isBlack(const Bitmap &bitmap, std::uint32_t x, std::uint32_t y)
{
    return (bitmap.row(y)[x / 8] & (0x80 >> x % 8)) != 0;
}

void setBlack(Bitmap &bitmap, std::uint32_t x, std::uint32_t y)
{
    bitmap.row(y)[x / 8] = std::uint8_t(bitmap.row(y)[x / 8] | (0x80 >> x % 8));
}

// A square of one colour amid such squares belongs to a letter or to the paper, not to a half-tone.
constexpr std::uint32_t calm = 2;

// Stands for no share.
constexpr float mixed = -1.0F;

class Downsampler
{
public:
    Downsampler(const Bitmap &bitmap, std::uint32_t factor, Bitmap &result)
        : m_bitmap(bitmap)
        , m_factor(factor)
        , m_result(result)
        , m_squares(bitmap.stride() * 8)
        , m_errors(result.width() + 2)
        , m_below(result.width() + 2)
    {
        for (std::size_t x = 0; x < m_squares.size(); ++x)
            m_squares[x] = std::uint32_t(x / factor);
    }

    void run()
    {
        for (std::uint32_t y = 0; y < m_result.height(); ++y) {
            bringRows(y);
            compareRows();
            std::fill(m_below.begin(), m_below.end(), 0.0F);
            for (std::uint32_t x = 0; x < m_result.width(); ++x)
                decide(x, y);
            m_errors.swap(m_below);
        }
    }

private:
    using Shares = std::vector<float>; // of black, from 0 to 1

    // The shares of the rows around this one; those beyond the edges are missing.
    void bringRows(std::uint32_t y)
    {
        if (y > calm)
            m_shares.pop_front();
        while (m_nextRow < m_result.height() && m_nextRow <= y + calm)
            m_shares.push_back(sharesOf(m_nextRow++));
        m_own = std::min(y, calm);
    }

    [[nodiscard]] Shares sharesOf(std::uint32_t y) const
    {
        const std::uint32_t top = y * m_factor;
        const std::uint32_t rows = std::min(m_bitmap.height() - top, m_factor);
        std::vector<std::uint32_t> black(m_squares.back() + 1);
        for (std::uint32_t down = 0; down < rows; ++down)
            countBlack(m_bitmap.row(top + down), black);
        Shares shares;
        shares.reserve(m_result.width());
        for (std::uint32_t x = 0; x < m_result.width(); ++x) {
            const std::uint32_t columns = std::min(m_bitmap.width() - x * m_factor, m_factor);
            shares.push_back(float(black[x]) / float(columns * rows));
        }
        return shares;
    }

    // Most of a page is white: nothing is done for that.
    void countBlack(const std::uint8_t *row, std::vector<std::uint32_t> &black) const
    {
        for (std::size_t place = 0; place < m_bitmap.stride(); ++place) {
            for (std::uint8_t bits = row[place]; bits != 0; bits &= std::uint8_t(bits - 1))
                ++black[m_squares[place * 8 + 7 - std::size_t(std::countr_zero(bits))]];
        }
    }

    // For each column of the rows around this one, what all of them show, or that they differ.
    void compareRows()
    {
        m_columns = m_shares.front();
        for (const Shares &row : m_shares) {
            for (std::size_t x = 0; x < row.size(); ++x) {
                if (row[x] != m_columns[x])
                    m_columns[x] = mixed;
            }
        }
    }

    [[nodiscard]] bool isCalm(std::uint32_t x, float share) const
    {
        if (share > 0.0F && share < 1.0F)
            return false;
        const std::uint32_t first = x - std::min(x, calm);
        const std::uint32_t last = std::min(x + calm, m_result.width() - 1);
        return std::all_of(m_columns.begin() + first, m_columns.begin() + last + 1,
                           [share](float other) { return other == share; });
    }

    void decide(std::uint32_t x, std::uint32_t y)
    {
        const float share = m_shares[m_own][x];
        const bool plain = isCalm(x, share);
        const float wanted = plain ? share : share + m_errors[x + 1];
        const bool black = wanted >= 0.5F;
        if (black)
            setBlack(m_result, x, y);
        if (!plain)
            pass(x, wanted - (black ? 1.0F : 0.0F));
    }

    // Floyd and Steinberg's shares; places are one further, so that there is one before the first.
    void pass(std::uint32_t x, float error)
    {
        m_errors[x + 2] += error * 7 / 16;
        m_below[x] += error * 3 / 16;
        m_below[x + 1] += error * 5 / 16;
        m_below[x + 2] += error / 16;
    }

    const Bitmap &m_bitmap;
    std::uint32_t m_factor;
    Bitmap &m_result;
    std::vector<std::uint32_t> m_squares; ///< in which each column of the bitmap lies
    std::deque<Shares> m_shares;
    Shares m_columns;
    std::uint32_t m_nextRow = 0;
    std::size_t m_own = 0; ///< the row in the middle
    std::vector<float> m_errors;
    std::vector<float> m_below;
};

} // namespace

std::optional<Bitmap> downsampled(const Bitmap &bitmap, std::uint32_t factor, std::uint32_t width,
                                  std::uint32_t height)
{
    auto result = Bitmap::blank(width, height);
    const auto reaches = [factor](std::uint32_t edge, std::uint32_t squares) {
        return squares > 0 && std::uint64_t(squares - 1) * factor < edge;
    };
    if (!result || !reaches(bitmap.width(), width) || !reaches(bitmap.height(), height))
        return {};
    Downsampler(bitmap, factor, *result).run();
    return result;
}

std::optional<Bitmap> subsampled(const Bitmap &bitmap, std::uint32_t width, std::uint32_t height)
{
    const auto isFewer = [](std::uint32_t few, std::uint32_t many) {
        return few > 0 && few <= many;
    };
    auto result = Bitmap::blank(width, height);
    if (!result || !isFewer(width, bitmap.width()) || !isFewer(height, bitmap.height()))
        return {};
    const auto middle = [](std::uint64_t index, std::uint32_t few, std::uint32_t many) {
        return std::uint32_t((2 * index + 1) * many / (2 * std::uint64_t(few)));
    };
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            if (isBlack(bitmap, middle(x, width, bitmap.width()),
                        middle(y, height, bitmap.height())))
                setBlack(*result, x, y);
        }
    }
    return result;
}

} // namespace engine
