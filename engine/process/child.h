#pragma once

#include "limits.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace engine {

/// What a child process is to do.
struct ChildTask
{
    /// Who the child is, in messages: "Ghostscript".
    std::string name = {};

    /// What the child finds open: channel, and our descriptor for it. reportChannel is added.
    std::vector<std::pair<int, int>> channels = {};

    /// Runs in the child, which ends with the returned exit status.
    std::function<int()> body = {};

    /// The words with which the child says that what it made may be wrong; empty: it never does.
    std::string_view warning = {};

    /// The words with which the child says that it could not write, even if it then ends well.
    std::string_view writeError = {};

    /// The bytes that the child has written so far; none: it writes nothing that counts.
    std::function<std::uintmax_t()> written = {};

    /// The most that it may write.
    std::uintmax_t mostWritten = std::numeric_limits<std::uintmax_t>::max();

    /// Open files or folders on the disks that it writes to.
    std::vector<int> disks = {};
};

struct ChildResult
{
    std::string name = {};      ///< the task's
    int signal = 0;             ///< that ended it; 0: none did
    int status = 0;             ///< exit status; 128 and the signal's number if one ended it
    std::string violation = {}; ///< what it was ended for, to follow its name; empty: nothing
    bool interrupted = false;   ///< it was ended because corvgs was asked to end
    bool warned = false;        ///< it said that what it made may be incorrect
    bool couldNotWrite = false; ///< it said that something could not be written
    std::string report = {};    ///< what it wrote to reportChannel
};

class ChildProcess;

/// Children at work side by side. Neither they nor their own children outlive this, nor corvgs.
/// What they say goes, up to a bound, to our standard output and standard error; they have nothing
/// to read.
class Children
{
public:
    explicit Children(const Limits &limits);
    ~Children();
    Children(const Children &) = delete;
    Children &operator=(const Children &) = delete;

    /// Starts a child, whose limits are its own. Returns the number under which to wait for it;
    /// throws a Failure if there can be no process.
    std::size_t start(ChildTask task);

    /// Waits for the end of a child, and serves all others meanwhile. Once for each number.
    ChildResult wait(std::size_t number);

private:
    void serve();
    void collect();

    Limits m_limits;
    std::size_t m_started = 0;
    std::map<std::size_t, std::unique_ptr<ChildProcess>> m_running;
    std::map<std::size_t, ChildResult> m_results;
};

/// One child, and no other.
ChildResult run(ChildTask task, const Limits &limits);

/// Throws a Failure that names the child, unless it ended by itself and well and has written all
/// that it had to write.
void expectSuccess(const ChildResult &result);

} // namespace engine
