#pragma once

#include <chrono>
#include <cstdint>

namespace engine {

/// What an engine may use up before it is taken for lost.
struct Limits
{
    /// Processor time without growth of the copy or of the temporary files. The slowest sound
    /// documents known take little more than a minute in all; a batch over night can spare five.
    std::chrono::duration<double> stall = std::chrono::minutes(5);

    /// Bytes of address space of the engine. Ghostscript itself takes a quarter of a gibibyte and
    /// the bitmap that the window allows 300 MB more; a machine of 8 GiB lives through four.
    std::uintmax_t memory = std::uintmax_t(4) << 30;
};

} // namespace engine
