#include "console.h"

#include "core/sizetext.h"
#include "output.h"

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

QString timeText(double seconds)
{
    const auto whole = static_cast<qint64>(seconds);
    const QString minutesAndSeconds = u"%1:%2"_s.arg(whole / 60 % 60, 2, 10, QLatin1Char('0'))
                                          .arg(whole % 60, 2, 10, QLatin1Char('0'));
    return whole < 3600 ? minutesAndSeconds
                        : QString::number(whole / 3600) + u':' + minutesAndSeconds;
}

} // namespace

QString progressText(const Tally &tally, qsizetype fresh, qsizetype left, double seconds)
{
    QString text = u"%1 of %2 files, %3 saved"_s.arg(tally.files())
                       .arg(tally.files() + left)
                       .arg(core::briefSizeText(tally.saved()));
    if (fresh == 0 || seconds <= 0)
        return text;
    const double rate = static_cast<double>(fresh) / seconds;
    return text + u", %1 files/s, %2 left"_s.arg(QString::number(rate, 'f', 1),
                                                 timeText(static_cast<double>(left) / rate));
}

Console::Console(const Options &options, const Versions &versions, qsizetype fileCount)
    : m_options(options)
    , m_versions(versions)
    , m_fileCount(fileCount)
    , m_onTerminal(isatty(STDERR_FILENO) && !options.quiet && !options.json)
{
    m_timer.start();
}

Console::~Console()
{
    clearProgress();
}

void Console::hadEarlier(const Result &result)
{
    m_tally.take(result);
    ++m_earlier;
}

void Console::started(const QString &input, const QString &output)
{
    if (m_options.json)
        write(startLine(input, output));
}

void Console::had(const Result &result)
{
    m_tally.take(result);
    if (m_options.json)
        write(resultLine(result, m_versions));
    showProgress();
}

void Console::sayStopping()
{
    clearProgress();
    if (!m_options.quiet && !m_options.json)
        complain(u"engines at work may finish, no more are started; a second signal ends them"_s);
}

void Console::sayEnd()
{
    clearProgress();
    if (m_options.json)
        return write(m_tally.line(left()));
    if (!m_options.quiet)
        write(m_tally.text(left()).toLocal8Bit() + '\n');
    for (const Failure &failure : m_tally.failures())
        complain(failure.text());
}

void Console::showProgress()
{
    if (!m_onTerminal)
        return;
    const double seconds = static_cast<double>(m_timer.elapsed()) / 1000;
    const qsizetype fresh = m_tally.files() - m_earlier;
    writeError('\r' + progressText(m_tally, fresh, left(), seconds).toLocal8Bit() + "\033[K");
}

void Console::clearProgress()
{
    if (m_onTerminal)
        writeError("\r\033[K");
}

} // namespace batch
