#pragma once

#include <string>

namespace engine {

/// The passwords of a copy, as they were typed, in the locale's encoding.
struct Passwords
{
    std::string user;
    std::string owner;

    /// Without one, the line asks for no encryption.
    [[nodiscard]] bool areSet() const { return !user.empty() || !owner.empty(); }
};

} // namespace engine
