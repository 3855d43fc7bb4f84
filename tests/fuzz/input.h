#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>

/// What libFuzzer calls with every input; returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// The input as the parsers take it.
inline std::string textOf(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), size};
}

/// Ends the program, and so the search, where a promise is broken.
inline void promise(bool kept)
{
    if (!kept)
        std::abort();
}
