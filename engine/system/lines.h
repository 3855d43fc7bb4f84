#pragma once

#include <optional>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

namespace engine {

/// What `read` makes of each line, an optional value, in their order. Nothing if it makes nothing
/// of one of them, or if the last one has no end.
template <typename Read>
auto readLines(const std::string &lines, Read read)
{
    using Value = typename std::invoke_result_t<Read, const std::string &>::value_type;
    std::optional<std::vector<Value>> values(std::in_place);
    std::istringstream stream(lines);
    for (std::string line; values && std::getline(stream, line);) {
        const auto value = stream.eof() ? std::nullopt : read(line);
        if (value)
            values->push_back(*value);
        else
            values.reset();
    }
    return values;
}

} // namespace engine
