#pragma once

#include <cstdint>

namespace engine {

/// What is known of a finished draft when it is decided what becomes the copy. Sizes in bytes.
struct DraftFacts
{
    std::uintmax_t original = 0;
    std::uintmax_t draft = 0;
    bool asked = false; ///< for passwords, a description or PDF/A, which the original doesn't have
    bool repaired = false; ///< the original is damaged, the draft is not
};

enum class Choice {
    Draft,
    Original ///< byte for byte
};

/// What becomes the copy. It is never larger than the original, but where something was asked for
/// that takes room, and by a twentieth, or a kilobyte, at most where damage was repaired.
Choice choiceOf(const DraftFacts &facts);

/// The bytes that a copy is filled up to if it has fewer: the window takes one of at most 5000
/// bytes for none. 0 if the original is not larger than that itself.
std::uintmax_t leastSizeFor(std::uintmax_t original);

} // namespace engine
