#pragma once

#include "imagefacts.h"

#include <optional>
#include <string>

namespace engine {

/// An image's samples with 8 bits for every component, those that an index stands for in place of
/// the index; nothing if it has filters that are not generic, or is damaged, or too large.
std::optional<std::string> plainSamplesOf(QPDFObjectHandle image, const ImageFacts &facts);

/// The bytes of a stream without all of its filters but the last, if those are generic; nothing if
/// one is not, or is damaged.
std::optional<std::string> bytesForLastFilter(QPDFObjectHandle stream);

} // namespace engine
