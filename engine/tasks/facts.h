#pragma once

#include <map>
#include <optional>
#include <string>

namespace engine {

/// What a confined child tells about a document: numbers by name.
using Facts = std::map<std::string, long long>;

/// To be passed from a confined child to corvgs, one line a fact.
std::string linesOf(const Facts &facts);

/// The facts again; nothing for a text that linesOf() does not write.
std::optional<Facts> factsOf(const std::string &lines);

/// 0 for one that isn't there.
long long valueOf(const Facts &facts, const std::string &name);

} // namespace engine
