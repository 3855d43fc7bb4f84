#pragma once

#include <string>

namespace engine {

/// Takes from the process the system calls by which it could reach the network, meddle with
/// another process, start a program (but for the one that is open as this descriptor; -1 is none),
/// or change files without opening them. Needs no_new_privs. Returns what is in force.
std::string filterCalls(int program);

} // namespace engine
