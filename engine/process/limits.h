#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace engine {

/// What an engine may use up before it is taken for lost.
struct Limits
{
    /// Processor time without a byte written or a step done (StallWatch). The slowest sound page
    /// known takes some fifteen seconds; a person waits a minute for one file.
    std::chrono::duration<double> stall = std::chrono::minutes(1);

    /// Processor time between two steps, say pages, for a child that writes all the while: a page
    /// of forms that show each other is written for ever.
    std::chrono::duration<double> step = std::chrono::minutes(5);

    /// Bytes of address space of a child. Ghostscript itself takes a quarter of a gibibyte and
    /// the bitmap that the window allows 300 MB more; a machine of 8 GiB lives through four.
    std::uintmax_t memory = std::uintmax_t(4) << 30;

    /// Bytes of the copy and the temporary files together, for a document of any size. Pages with
    /// layers of transparency need some hundred megabytes of temporary files at worst.
    std::uintmax_t output = std::uintmax_t(4) << 30;

    /// The same as a multiple of the document's size, where that is more: losslessly recompressed
    /// scans of gigabytes finish. A copy of fifty times the original's size is of no use.
    std::uintmax_t outputFactor = 50;

    /// Bytes of disk space that a child leaves to everybody else: at a gigabyte a second, as
    /// much as it can take between two looks. A disk that has less from the start may be used up.
    std::uintmax_t reserve = std::uintmax_t(512) << 20;

    /// The most bytes that may be written for a document of so many bytes.
    [[nodiscard]] std::uintmax_t outputFor(std::uintmax_t document) const
    {
        return std::max(output, document * outputFactor);
    }
};

} // namespace engine
