#pragma once

#include "confinement.h"

namespace engine {

/// Takes from the process the system calls by which it could reach the network, meddle with
/// another process, start a program that the policy does not name, or change files without opening
/// them. Needs no_new_privs. Returns what is in force.
std::string filterCalls(const AccessPolicy &policy);

} // namespace engine
