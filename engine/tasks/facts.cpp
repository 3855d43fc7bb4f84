#include "facts.h"

#include <charconv>
#include <sstream>

namespace engine {

std::string linesOf(const Facts &facts)
{
    std::string lines;
    for (const auto &[name, value] : facts)
        lines += name + "=" + std::to_string(value) + "\n";
    return lines;
}

std::optional<Facts> factsOf(const std::string &lines)
{
    Facts facts;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) {
        const auto equals = line.find('=');
        if (equals == std::string::npos)
            return {};
        long long value = 0;
        const char *end = line.data() + line.size();
        const auto [rest, error] = std::from_chars(line.data() + equals + 1, end, value);
        if (error != std::errc() || rest != end)
            return {};
        facts[line.substr(0, equals)] = value;
    }
    if (linesOf(facts) != lines)
        return {};
    return facts;
}

long long valueOf(const Facts &facts, const std::string &name)
{
    const auto fact = facts.find(name);
    return fact == facts.end() ? 0 : fact->second;
}

} // namespace engine
