#pragma once

namespace engine {

/// Whether this build has the address sanitizer, which reserves terabytes of address space, takes
/// more calls than the program does, and can get no memory under a limit of address space.
#if defined(CORVANE_SANITIZE) || defined(__SANITIZE_ADDRESS__)
constexpr bool hasSanitizer = true;
#else
constexpr bool hasSanitizer = false;
#endif

} // namespace engine
