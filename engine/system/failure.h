#pragma once

#include <cerrno>
#include <stdexcept>
#include <string>

namespace engine {

/// Why a run ends without a copy: one line for standard error, and the exit status.
class Failure : public std::runtime_error
{
public:
    explicit Failure(const std::string &reason, int status = 1);

    /// "what: the system's reason for errno"
    static Failure ofSystem(const std::string &what, int error = errno, int status = 1);

    [[nodiscard]] int status() const { return m_status; }

private:
    int m_status;
};

/// The text with every control character, line breaks above all, as a question mark.
std::string onOneLine(std::string text);

} // namespace engine
