#pragma once

#include <cstddef>
#include <string>

namespace engine {

/// Rows of samples of 8 bits, after the PNG filter that seems best for each row (/Predictor 15).
/// The bytes are whole rows.
std::string predicted(const std::string &bytes, std::size_t rowSize, std::size_t pixelSize);

} // namespace engine
