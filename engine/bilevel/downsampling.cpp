#include "downsampling.h"

#include <algorithm>
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

class Downsampler
{
public:
    Downsampler(const Bitmap &bitmap, std::uint32_t factor, Bitmap &result)
        : m_bitmap(bitmap)
        , m_factor(factor)
        , m_result(result)
        , m_errors(result.width() + 2)
        , m_below(result.width() + 2)
    {
    }

    void run()
    {
        for (std::uint32_t y = 0; y < m_result.height(); ++y) {
            bringRows(y);
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
        Shares shares;
        shares.reserve(m_result.width());
        for (std::uint32_t x = 0; x < m_result.width(); ++x)
            shares.push_back(shareOf(x, y));
        return shares;
    }

    [[nodiscard]] float shareOf(std::uint32_t x, std::uint32_t y) const
    {
        const std::uint32_t right = std::min(m_bitmap.width() - x * m_factor, m_factor);
        const std::uint32_t bottom = std::min(m_bitmap.height() - y * m_factor, m_factor);
        int black = 0;
        for (std::uint32_t down = 0; down < bottom; ++down) {
            for (std::uint32_t across = 0; across < right; ++across)
                black += isBlack(m_bitmap, x * m_factor + across, y * m_factor + down) ? 1 : 0;
        }
        return float(black) / float(right * bottom);
    }

    [[nodiscard]] bool isCalm(std::uint32_t x, float share) const
    {
        if (share > 0.0F && share < 1.0F)
            return false;
        const std::uint32_t first = x - std::min(x, calm);
        const std::uint32_t last = std::min(x + calm, m_result.width() - 1);
        return std::all_of(m_shares.begin(), m_shares.end(), [&](const Shares &row) {
            return std::all_of(row.begin() + first, row.begin() + last + 1,
                               [share](float other) { return other == share; });
        });
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
    std::deque<Shares> m_shares;
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
