#pragma once

#include "facts.h"
#include "run.h"
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

/// Does this work on the run's document in a child that can reach these files, neither anything
/// else nor corvgs, because a document may be made to break its reader; waits for it to end. It
/// answers with facts; an exception is an objection.
ChildResult runConfined(const Run &run, const ConfinedFiles &files, std::function<Facts()> work);

/// What such a child found out. Throws a Failure that begins with the name of the document if it
/// had something to object, or did not end well.
Facts answerOf(const ChildResult &result, const std::string &document);

/// What answerOf() says of runConfined().
Facts factsFrom(const Run &run, const ConfinedFiles &files, std::function<Facts()> work);

/// The failure of a run whose child ended without a usable answer.
Failure crashOver(const std::string &document);

/// Why the document can't be read, as the child says; empty if it has nothing to object. Throws a
/// Failure if it did not end well.
std::string objectionIn(const ChildResult &result, const std::string &document);

/// The size that the facts tell of a file that the child wrote. Throws a Failure if the file has
/// another.
std::uintmax_t sizeIn(const Facts &facts, int file);

} // namespace engine
