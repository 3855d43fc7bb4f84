#pragma once

namespace engine {

/// What a child writes to its report for a step of its work that is done and of which there is a
/// finite number: a page, a stream. It counts as progress, and is no part of the report.
constexpr char progressMark = '\006';

/// From now on the marks of this process go to that descriptor. Until then reportProgress() has no
/// effect.
void reportProgressTo(int descriptor);

/// To be called after each such step: a child that neither writes nor gets on is taken for lost.
void reportProgress();

} // namespace engine
