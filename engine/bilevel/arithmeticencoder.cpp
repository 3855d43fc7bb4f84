#include "arithmeticencoder.h"

#include <algorithm>

namespace engine {

namespace {

struct Estimate
{
    std::uint16_t value;
    std::uint8_t afterLikely;
    std::uint8_t afterUnlikely;
    bool exchange; ///< after an unlikely bit it counts as the likely one
};

// T.88, table E.1
// clang-format off
constexpr Estimate estimates[] = {
    {0x5601,  1,  1, true }, {0x3401,  2,  6, false}, {0x1801,  3,  9, false},
    {0x0AC1,  4, 12, false}, {0x0521,  5, 29, false}, {0x0221, 38, 33, false},
    {0x5601,  7,  6, true }, {0x5401,  8, 14, false}, {0x4801,  9, 14, false},
    {0x3801, 10, 14, false}, {0x3001, 11, 17, false}, {0x2401, 12, 18, false},
    {0x1C01, 13, 20, false}, {0x1601, 29, 21, false}, {0x5601, 15, 14, true },
    {0x5401, 16, 14, false}, {0x5101, 17, 15, false}, {0x4801, 18, 16, false},
    {0x3801, 19, 17, false}, {0x3401, 20, 18, false}, {0x3001, 21, 19, false},
    {0x2801, 22, 19, false}, {0x2401, 23, 20, false}, {0x2201, 24, 21, false},
    {0x1C01, 25, 22, false}, {0x1801, 26, 23, false}, {0x1601, 27, 24, false},
    {0x1401, 28, 25, false}, {0x1201, 29, 26, false}, {0x1101, 30, 27, false},
    {0x0AC1, 31, 28, false}, {0x09C1, 32, 29, false}, {0x08A1, 33, 30, false},
    {0x0521, 34, 31, false}, {0x0441, 35, 32, false}, {0x02A1, 36, 33, false},
    {0x0221, 37, 34, false}, {0x0141, 38, 35, false}, {0x0111, 39, 36, false},
    {0x0085, 40, 37, false}, {0x0049, 41, 38, false}, {0x0025, 42, 39, false},
    {0x0015, 43, 40, false}, {0x0009, 44, 41, false}, {0x0005, 45, 42, false},
    {0x0001, 45, 43, false}, {0x5601, 46, 46, false}};
// clang-format on

constexpr ArithmeticState stateOf(unsigned estimate, unsigned likelyBit)
{
    return ArithmeticState(2 * estimate + likelyBit);
}

} // namespace

constexpr std::array<ArithmeticEncoder::Row, 94> ArithmeticEncoder::rows = [] {
    std::array<Row, 94> all = {};
    // cppcheck-suppress syntaxError ; it can't read a lambda that makes a member's value
    for (unsigned state = 0; state < all.size(); ++state) {
        const Estimate &estimate = estimates[state / 2];
        const unsigned likely = state % 2;
        all[state] = {estimate.value, stateOf(estimate.afterLikely, likely),
                      stateOf(estimate.afterUnlikely, estimate.exchange ? 1 - likely : likely)};
    }
    return all;
}();

void ArithmeticEncoder::encodeRun(ArithmeticState &state, unsigned bit, std::uint64_t count)
{
    while (count > 0) {
        if ((state & 1U) == bit) {
            // As long as the interval needs no renormalisation, it only gets narrower.
            const std::uint32_t estimate = rows[state].estimate;
            const std::uint32_t free = (m_interval - half) / estimate;
            const auto some = std::uint32_t(std::min<std::uint64_t>(free, count));
            m_interval -= some * estimate;
            m_code += some * estimate;
            count -= some;
            if (count == 0)
                return;
        }
        encode(state, bit);
        --count;
    }
}

std::string ArithmeticEncoder::finish()
{
    const std::uint32_t end = m_code + m_interval;
    m_code |= 0xFFFF;
    if (m_code >= end)
        m_code -= half;
    for (int i = 0; i < 2; ++i) {
        m_code <<= m_free;
        putByte();
    }
    if (m_bytes.back() != '\xFF')
        m_bytes += '\xFF';
    m_bytes += '\xAC';
    return m_bytes.substr(1);
}

// A carry may still come to the byte that is put last. Where it is 0xFF, the next byte has only
// seven bits, so that no carry goes further.
void ArithmeticEncoder::putByte()
{
    constexpr std::uint32_t carry = 0x8000000;
    if (m_bytes.back() != '\xFF' && m_code >= carry) {
        m_bytes.back() = char(m_bytes.back() + 1);
        m_code -= carry;
    }
    const unsigned bits = m_bytes.back() == '\xFF' ? 7 : 8;
    m_bytes += char(m_code >> (27 - bits));
    m_code &= (1U << (27 - bits)) - 1;
    m_free = bits;
}

} // namespace engine
