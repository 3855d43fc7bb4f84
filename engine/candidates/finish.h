#pragma once

#include "pdf/copywriter.h"

namespace engine {

/// What is done to a draft when it has been proven, because a reader may show it otherwise then, or
/// not at all. Files are open descriptors.
struct FinishOrder
{
    int draft = -1;
    int original = -1; ///< whose restrictions stay where the line asks for no password; -1: none
    int copy = -1;     ///< open for reading and writing
    std::optional<Encryption> encryption = {};
    bool leaveOutStandard14 = false; ///< the programs of the standard fourteen fonts
    std::uintmax_t leastSize = 0;
};

/// Writes the copy; its size. Throws a std::exception if it can't be written.
std::uintmax_t finishDraft(const FinishOrder &order);

} // namespace engine
