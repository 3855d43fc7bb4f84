#pragma once

#include "candidates/finish.h"
#include "tasks/run.h"

namespace engine {

/// The original becomes the copy, byte for byte. Throws a Failure if not every byte got there.
void copyOriginal(const Run &run);

/// A draft of so many bytes becomes the copy, byte for byte. Throws a Failure if not every byte got
/// there.
void copyDraft(const Run &run, int draft, std::uintmax_t size);

/// An order for writeFinished() that gives a draft the line's passwords, if it has any, and the
/// least size of a copy.
FinishOrder finishOrder(const Run &run);

/// The draft with what the order does to it, in a confined child; the size of the copy. If the
/// order has an original, that is the document, at documentChannel. Throws a Failure if it can't be
/// written.
std::uintmax_t writeFinished(const Run &run, int draft, const FinishOrder &order);

} // namespace engine
