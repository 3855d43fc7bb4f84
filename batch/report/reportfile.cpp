#include "reportfile.h"

#include "batch/refusal.h"

#include <QFileInfo>

#include <cerrno>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace batch {

ReportFile::ReportFile(const QString &path, bool resume)
    : m_file(path)
{
    const QFileInfo there(path);
    if (there.exists() && !there.isFile())
        throw Refusal(u"%1 is not a report: it is not a file"_s.arg(path));
    if (!resume && (there.exists() || there.isSymLink()))
        throw Refusal(u"%1 is there already: --resume goes on with it"_s.arg(path));
    open(resume);
    lock();
    // The end moves only here, and only behind a line that is a report's.
    const qint64 end = readAll();
    if (end < m_file.size() && !m_file.resize(end))
        throw unusable();
}

void ReportFile::open(bool resume)
{
    // Not buffered: a line is with the system, whatever happens to this process.
    QIODevice::OpenMode mode = QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered;
    if (!resume)
        mode |= QIODevice::NewOnly;
    if (!m_file.open(mode))
        throw unusable();
}

qint64 ReportFile::readAll()
{
    QFile buffered(m_file.fileName());
    if (!buffered.open(QIODevice::ReadOnly))
        throw Refusal(textFor(buffered.errorString()), ExitCode::cannotWork);
    return readReport(buffered, m_history);
}

void ReportFile::lock()
{
    if (flock(m_file.handle(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
        return; // some file systems have no locks
    throw Refusal(u"another run writes the report %1"_s.arg(m_file.fileName()),
                  ExitCode::cannotWork);
}

bool ReportFile::append(const QByteArray &lines)
{
    const bool written = m_file.write(lines) == lines.size();
    if (!written)
        m_errorText = textFor(m_file.errorString());
    return written;
}

bool ReportFile::appendSafely(const QByteArray &lines)
{
    if (!append(lines))
        return false;
    const bool safe = fsync(m_file.handle()) == 0 || errno == EINVAL; // not every system can
    if (!safe)
        m_errorText = textFor(qt_error_string(errno));
    return safe;
}

Refusal ReportFile::unusable() const
{
    return Refusal(textFor(m_file.errorString()), ExitCode::cannotWork);
}

QString ReportFile::textFor(const QString &reason) const
{
    return u"the report %1 can't be written: %2"_s.arg(m_file.fileName(), reason);
}

} // namespace batch
