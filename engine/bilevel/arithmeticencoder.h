#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string>

namespace engine {

/// What an arithmetic coder has learned of the bits in one context; starts with nothing.
using ArithmeticState = std::uint8_t;

/// The adaptive binary arithmetic encoder of ITU-T T.88, annex E.
class ArithmeticEncoder
{
public:
    /// Encodes a bit, 0 or 1, and learns from it.
    void encode(ArithmeticState &state, unsigned bit)
    {
        const Row &row = rows[state];
        m_interval -= row.estimate;
        if (bit == (state & 1U)) {
            if (m_interval >= half) {
                m_code += row.estimate;
                return;
            }
            takeLarger(row.estimate);
            state = row.afterLikely;
        } else {
            takeSmaller(row.estimate);
            state = row.afterUnlikely;
        }
        renormalise();
    }

    /// The same as so many calls of encode() with this bit, and far quicker.
    void encodeRun(ArithmeticState &state, unsigned bit, std::uint64_t count);

    /// Ends the code and returns it. Nothing can be encoded after that.
    std::string finish();

private:
    /// What a state says; of an even one the likely bit is 0, of an odd one 1.
    struct Row
    {
        std::uint16_t estimate; ///< how probable the unlikely bit is
        ArithmeticState afterLikely;
        ArithmeticState afterUnlikely;
    };
    static const std::array<Row, 94> rows;

    static constexpr std::uint32_t half = 0x8000;

    // The intervals are exchanged where the unlikely bit's has become the larger one.
    void takeLarger(std::uint32_t estimate)
    {
        if (m_interval < estimate)
            m_interval = estimate;
        else
            m_code += estimate;
    }

    void takeSmaller(std::uint32_t estimate)
    {
        if (m_interval < estimate)
            m_code += estimate;
        else
            m_interval = estimate;
    }

    void renormalise()
    {
        unsigned shift = unsigned(std::countl_zero(std::uint16_t(m_interval)));
        m_interval <<= shift;
        while (shift >= m_free) {
            m_code <<= m_free;
            shift -= m_free;
            putByte();
        }
        m_code <<= shift;
        m_free -= shift;
    }

    void putByte();

    std::uint32_t m_interval = half;
    std::uint32_t m_code = 0;
    unsigned m_free = 12;         ///< shifts until the next byte is complete
    std::string m_bytes = {'\0'}; ///< begins with a byte too many, which stays as it is
};

} // namespace engine
