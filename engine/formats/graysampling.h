#pragma once

#include <cstdint>
#include <string>

namespace engine {

/// Samples of 8 bits, in rows from the top, without gaps; width times height of them.
struct GraySamples
{
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::string samples;
};

/// The picture with fewer samples, each the mean of those it stands for. Neither edge may be 0, nor
/// longer than it was.
GraySamples averaged(const GraySamples &picture, std::uint32_t width, std::uint32_t height);

/// The same, each one of those it stands for.
GraySamples subsampled(const GraySamples &picture, std::uint32_t width, std::uint32_t height);

} // namespace engine
