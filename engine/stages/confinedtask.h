#pragma once

#include "facts.h"
#include "process/child.h"
#include "system/failure.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace engine {

/// What a confined child has open: channel, and our descriptor for it.
struct ConfinedFiles
{
    std::vector<std::pair<int, int>> readable;
    std::vector<std::pair<int, int>> writable;
};

/// A child that does this work on documents, in a process that can reach these files, neither
/// anything else nor corvgs, because a document may be made to break its reader. It answers with
/// facts; an exception is an objection.
ChildTask confinedTask(const ConfinedFiles &files, std::uintmax_t documentSize,
                       const Limits &limits, std::function<Facts()> work);

/// What the child found out. Throws a Failure that begins with the name of the document if it had
/// something to object, or did not end well.
Facts answerOf(const ChildResult &result, const std::string &document);

/// The failure of a run whose child ended without a usable answer.
Failure crashOver(const std::string &document);

/// Why the document can't be read, as the child says; empty if it has nothing to object. Throws a
/// Failure if it did not end well.
std::string objectionIn(const ChildResult &result, const std::string &document);

/// The size that the facts tell of a file that the child wrote. Throws a Failure if the file has
/// another.
std::uintmax_t sizeIn(const Facts &facts, int file);

} // namespace engine
