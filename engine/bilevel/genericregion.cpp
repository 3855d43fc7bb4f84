#include "genericregion.h"

#include "arithmeticencoder.h"

#include <algorithm>

namespace engine {

namespace {

using namespace std::string_view_literals;

// The neighbours that a pixel's context consists of, the adaptive pixels among them: so many in
// each of the rows, of which so many lie right of the pixel.
struct Neighbours
{
    unsigned above2, ahead2; ///< two rows up
    unsigned above1, ahead1; ///< one row up
    unsigned before;         ///< in its own row, to the left
    unsigned typical;        ///< the context that tells whether a row is like the one above
    std::string_view adaptive;

    [[nodiscard]] constexpr unsigned count() const { return above2 + above1 + before; }
};

constexpr Neighbours neighbours[] = {{5, 2, 7, 3, 4, 0x9B25, "\3\xFF\xFD\xFF\2\xFE\xFE\xFE"sv},
                                     {4, 2, 6, 3, 3, 0x0795, "\3\xFF"sv}};

constexpr unsigned lowest(unsigned bits, unsigned count)
{
    return bits & ((1U << count) - 1);
}

// A byte of each of the three rows that a context comes from, between its neighbours: bit 15 is the
// byte's first pixel.
struct Window
{
    static constexpr unsigned black = 0xFFFFFF;

    unsigned above2 = 0;
    unsigned above1 = 0;
    unsigned own = 0;
    unsigned far = 0; ///< the own row a period before, or once more

    void advance(unsigned nextAbove2, unsigned nextAbove1, unsigned nextOwn)
    {
        above2 = (above2 << 8 | nextAbove2) & black;
        above1 = (above1 << 8 | nextAbove1) & black;
        own = (own << 8 | nextOwn) & black;
    }

    // Each of its pixels has the same context.
    [[nodiscard]] bool isUniform() const
    {
        return (above2 | above1 | own | far) == 0 || (above2 & above1 & own & far) == black;
    }
};

// Pixels of one colour in the context where all the others have that colour.
struct Run
{
    unsigned colour = 0;
    std::uint64_t pixels = 0;
};

// Periodic: the first adaptive pixel has its place in the pixel's row.
template <int pattern, bool periodic>
class RegionEncoder
{
public:
    explicit RegionEncoder(const Bitmap &bitmap, unsigned period = 0)
        : m_bitmap(bitmap)
        , m_period(period)
        , m_white(bitmap.stride())
        , m_states(std::size_t(1) << shape.count())
    {
    }

    std::string encode(bool typical)
    {
        for (std::uint32_t y = 0; y < m_bitmap.height(); ++y) {
            if (!typical || !isTypical(y))
                encodeRow(y);
        }
        return m_encoder.finish();
    }

private:
    static constexpr Neighbours shape = neighbours[pattern];

    // The row so far above this one; above the bitmap everything is white.
    const std::uint8_t *rowAbove(std::uint32_t y, std::uint32_t distance) const
    {
        return y < distance ? m_white.data() : m_bitmap.row(y - distance);
    }

    // What is coded is whether that has changed since the row above.
    bool isTypical(std::uint32_t y)
    {
        const bool same =
            std::equal(m_bitmap.row(y), m_bitmap.row(y) + m_bitmap.stride(), rowAbove(y, 1));
        m_encoder.encode(m_states[shape.typical], same != m_typical ? 1 : 0);
        m_typical = same;
        return same;
    }

    void encodeRow(std::uint32_t y)
    {
        const std::uint8_t *above2 = rowAbove(y, 2);
        const std::uint8_t *above1 = rowAbove(y, 1);
        const std::uint8_t *own = m_bitmap.row(y);
        const std::size_t last = m_bitmap.stride() - 1;
        Window window = {above2[0], above1[0], own[0]};
        startPeriod(own);
        for (std::size_t i = 0; i < last; ++i) {
            window.advance(above2[i + 1], above1[i + 1], own[i + 1]);
            window.far = advancePeriod(window, own, i + 1);
            encodeWindow(window, 8);
        }
        window.advance(0, 0, 0);
        window.far = advancePeriod(window, own, last + 1);
        encodeWindow(window, (m_bitmap.width() - 1) % 8 + 1);
        finishRun();
    }

    void startPeriod(const std::uint8_t *own) { m_before = m_period < 8 ? own[0] : 0; }

    unsigned advancePeriod(const Window &window, const std::uint8_t *own, std::size_t next)
    {
        if constexpr (!periodic)
            return window.own;
        const std::size_t bytes = m_period / 8;
        const bool inside = next >= bytes && next - bytes < m_bitmap.stride();
        m_before = m_before << 8 | (inside ? own[next - bytes] : 0U);
        return m_before >> m_period % 8 & Window::black;
    }

    void encodeWindow(const Window &window, unsigned pixels)
    {
        const unsigned colour = window.own & 1U;
        if (m_run.pixels > 0 && !(window.isUniform() && colour == m_run.colour))
            finishRun();
        if (window.isUniform())
            m_run = {colour, m_run.pixels + pixels};
        else
            encodePixels(window, pixels);
    }

    void finishRun()
    {
        ArithmeticState &state = m_states[m_run.colour == 0 ? 0 : m_states.size() - 1];
        m_encoder.encodeRun(state, m_run.colour, m_run.pixels);
        m_run.pixels = 0;
    }

    void encodePixels(const Window &window, unsigned count)
    {
        for (unsigned shift = 15; shift > 15 - count; --shift) {
            unsigned context = lowest(window.own >> (shift + 1), shape.before);
            context |= lowest(window.above1 >> (shift - shape.ahead1), shape.above1)
                       << shape.before;
            context |= lowest(window.above2 >> (shift - shape.ahead2), shape.above2)
                       << (shape.before + shape.above1);
            if constexpr (periodic)
                context = (context & ~(1U << shape.before)) | (window.far >> shift & 1U)
                                                                  << shape.before;
            m_encoder.encode(m_states[context], window.own >> shift & 1U);
        }
    }

    const Bitmap &m_bitmap;
    unsigned m_period;
    std::uint32_t m_before = 0;
    std::vector<std::uint8_t> m_white;
    std::vector<ArithmeticState> m_states;
    ArithmeticEncoder m_encoder;
    Run m_run;
    bool m_typical = false;
};

} // namespace

std::string encodeRegion(const Bitmap &bitmap, const RegionCoding &coding)
{
    if (coding.pattern == 1)
        return RegionEncoder<1, false>(bitmap).encode(coding.typical);
    if (coding.period == 0)
        return RegionEncoder<0, false>(bitmap).encode(coding.typical);
    return RegionEncoder<0, true>(bitmap, coding.period).encode(coding.typical);
}

std::string adaptivePixels(const RegionCoding &coding)
{
    std::string pixels(neighbours[coding.pattern].adaptive);
    if (coding.period != 0)
        pixels.replace(0, 2, {char(-int(coding.period)), 0});
    return pixels;
}

} // namespace engine
