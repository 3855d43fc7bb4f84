#pragma once

#include <QString>

#include <exception>

namespace batch {

/// What corvane-batch ends with. Other programs and schedulers know these numbers.
enum class ExitCode {
    allDone = 0,
    someFailed = 1,
    usage = 2,      ///< the command line, or what it names, makes no sense; nothing was written
    cannotWork = 3, ///< no engine, output folder or report that can be used
    interrupted = 130,
    terminated = 143,
};

/// Thrown before any engine is started: one line for standard error, without the program's name.
class Refusal : public std::exception
{
public:
    explicit Refusal(QString text, ExitCode code = ExitCode::usage)
        : m_text(std::move(text))
        , m_code(code)
    {
    }

    [[nodiscard]] const QString &text() const { return m_text; }
    [[nodiscard]] ExitCode code() const { return m_code; }

private:
    QString m_text;
    ExitCode m_code;
};

} // namespace batch
