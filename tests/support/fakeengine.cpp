#include "fakeengine.h"

#include "sandbox.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

FakeEngine::FakeEngine()
{
    qputenv("CORVANE_FAKE_ENGINE", QFile::encodeName(m_folder.path()));
    const QByteArray gate = QFile::encodeName(m_folder.filePath("gate"));
    // Open at both ends here, so that neither side ever waits for the other to open it.
    if (mkfifo(gate.constData(), 0600) != 0 || (m_gate = ::open(gate.constData(), O_RDWR)) < 0)
        qFatal("no gate");
    behave({});
}

FakeEngine::~FakeEngine()
{
    close(m_gate);
    qunsetenv("CORVANE_FAKE_ENGINE");
}

void FakeEngine::behave(const Behaviour &behaviour, const QString &inputBaseName)
{
    const QString text = QString("%1 %2 %3 %4\n")
                             .arg(behaviour.bytes)
                             .arg(behaviour.exitCode)
                             .arg(behaviour.signal)
                             .arg(behaviour.gate ? 1 : 0);
    put("behaviour." + inputBaseName, text.toLatin1());
    put("says." + inputBaseName, behaviour.says);
    put("complains." + inputBaseName, behaviour.complains);
}

void FakeEngine::take(const QString &outputBaseName)
{
    put("taken." + outputBaseName, {});
}

void FakeEngine::put(const QString &name, const QByteArray &content) const
{
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) < 0)
        qFatal("no behaviour");
}

QStringList FakeEngine::linesOf(const QString &name) const
{
    return QString::fromLocal8Bit(contentOf(m_folder.filePath(name)))
        .split('\n', Qt::SkipEmptyParts);
}

QStringList FakeEngine::processNumbers() const
{
    return linesOf("pids");
}

QStringList FakeEngine::processors() const
{
    return linesOf("processors");
}

void FakeEngine::open() const
{
    if (write(m_gate, "x", 1) != 1)
        qFatal("the gate is stuck");
}

QList<QStringList> FakeEngine::starts() const
{
    QList<QStringList> starts;
    for (const QByteArray &start : contentOf(m_folder.filePath("log")).split('\x1e')) {
        if (!start.isEmpty())
            starts.append(QString::fromLocal8Bit(start).split(QChar(0x1f)).mid(1));
    }
    return starts;
}

int FakeEngine::endCount() const
{
    return static_cast<int>(contentOf(m_folder.filePath("ended")).size());
}

QStringList FakeEngine::inputs() const
{
    QStringList names;
    for (const QStringList &arguments : starts())
        names.append(QFileInfo(arguments.value(arguments.indexOf("-f") + 1)).baseName());
    return names;
}
