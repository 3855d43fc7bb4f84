#pragma once

#include "confinement.h"

namespace engine {

/// Keeps the process from all files that the policy does not name, from TCP, and from other
/// processes' signals, as far as the kernel's Landlock goes. Needs no_new_privs. Returns what is in
/// force.
std::string confineFiles(const AccessPolicy &policy);

} // namespace engine
