#pragma once

#include "process/child.h"
#include "proof/findings.h"
#include "system/descriptor.h"

#include <cstdint>
#include <functional>

namespace engine {

/// Compares what a reader made of the copy with what it made of the original. They are foreign, as
/// the documents are.
using Comparing = std::function<Findings(int copy, int original)>;

/// The work in a process that can reach nothing else than the two open files. It writes what it
/// finds to the open answer file. Memory is in bytes of address space.
ChildTask comparingTask(int copy, int original, int answer, const Comparing &work,
                        std::uintmax_t memory);

/// What is in the answer file; nothing if that is not the answer of a comparingTask().
std::optional<Findings> answerIn(int file);

} // namespace engine
