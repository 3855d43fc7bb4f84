#pragma once

#include <cstdint>

namespace engine {

/// A code word of ITU-T T.4 or T.6 as it is looked up by the bits ahead.
struct FaxCode
{
    std::int16_t value = 0;
    std::uint8_t length = 0; ///< bits; 0 if no code word begins like this
};

/// The longest code words.
constexpr unsigned runCodeBits = 13;
constexpr unsigned modeCodeBits = 7;

/// A run's code word; its value is the pixels: 64 and more are to be followed by another.
FaxCode runCode(bool black, std::uint32_t bitsAhead);

/// The values of modes; between them, from -3 to 3, are those of the vertical mode.
constexpr std::int16_t passMode = 100;
constexpr std::int16_t horizontalMode = 101;

FaxCode modeCode(std::uint32_t bitsAhead);

} // namespace engine
