#pragma once

#include "confinement/confinement.h"
#include "system/descriptor.h"

#include <cstdint>
#include <string>
#include <vector>

namespace engine {

/// Opens the program for programChannel. Throws a Failure that calls it by its name, with the exit
/// status that a shell has for a program that can't be started.
Descriptor openProgram(const std::string &name, const std::string &path);

/// In a child: lets the policy through that the program at programChannel needs to be started, and
/// to read what is installed. Where it is a script, that is everything it may start.
void allowProgram(AccessPolicy &policy, const std::string &path);

/// In a child: confines it and becomes the program with these arguments and so many bytes of
/// address space. Returns an exit status if it can't.
int becomeProgram(const AccessPolicy &policy, const std::string &path,
                  const std::vector<std::string> &arguments, std::uintmax_t memory);

} // namespace engine
