#pragma once

#include <string>

namespace engine {

/// The passwords of a copy, as they were typed, in the locale's encoding. Both empty: it has none.
struct Passwords
{
    std::string user;
    std::string owner;
};

} // namespace engine
