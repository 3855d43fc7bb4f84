#pragma once

#include "limits.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace engine {

/// What a child process is to do.
struct ChildTask
{
    /// What the child finds open: channel, and our descriptor for it. reportChannel is added.
    std::vector<std::pair<int, int>> channels;

    /// Runs in the child, which ends with the returned exit status.
    std::function<int()> body;

    /// The words with which the child says that what it made may be wrong; empty: it never does.
    std::string_view warning;

    /// The bytes that the child has written so far.
    std::function<std::uintmax_t()> written;

    /// The most that it may write.
    std::uintmax_t mostWritten = std::numeric_limits<std::uintmax_t>::max();

    /// Open files or folders on the disks that it writes to.
    std::vector<int> disks;
};

struct ChildResult
{
    int signal = 0;           ///< that ended it; 0: none did
    int status = 0;           ///< exit status; 128 and the signal's number if one ended it
    std::string violation;    ///< what it was ended for, to be read behind its name; empty: nothing
    bool interrupted = false; ///< it was ended because corvgs was asked to end
    bool warned = false;      ///< it said that what it made may be incorrect
    std::string report;       ///< what it wrote to reportChannel
};

/// Runs the task and waits. The child and its children do not outlive the call, nor corvgs.
/// What the child says goes to our standard output and standard error; it has nothing to read.
ChildResult run(const ChildTask &task, const Limits &limits);

} // namespace engine
