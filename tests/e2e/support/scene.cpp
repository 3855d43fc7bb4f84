#include "scene.h"

#include <QFile>
#include <QTest>

#include <algorithm>
#include <csignal>

namespace {

constexpr int bound = 60000; // ms

} // namespace

Scene::Scene(const Desktop &desktop)
    : user(desktop)
{
}

QString Scene::addSample(const QString &sample, const QString &name) const
{
    const QString path = sandbox.inputFolder() + '/' + name;
    if (!QFile::copy(SAMPLES_FOLDER "/" + sample + ".pdf", path))
        qFatal("cannot copy to %s", qPrintable(path));
    return path;
}

// A drop lists its files from last to first.
void Scene::startWith(const QStringList &files)
{
    user.start(tree.program());
    user.drop({files.crbegin(), files.crend()});
    user.chooseFolder(sandbox.outputFolder());
}

qint64 Scene::awaitHeldEngine() const
{
    qint64 held = 0;
    const auto stands = [&] {
        const QList<qint64> engines = childrenOf(user.program.processId());
        const auto found = std::ranges::find(engines, 'T', stateOf);
        held = found == engines.end() ? 0 : *found;
        return held != 0;
    };
    if (!QTest::qWaitFor(stands, bound))
        qFatal("no engine stands still");
    return held;
}

void Scene::resumeEngine() const
{
    kill(static_cast<pid_t>(awaitHeldEngine()), SIGCONT);
}

// One that nobody takes note of may stay as a zombie.
void awaitEndOf(qint64 process)
{
    if (!QTest::qWaitFor([process] { return QByteArrayView("\0Z", 2).contains(stateOf(process)); },
                         bound))
        qFatal("%lld has no end", static_cast<long long>(process));
}
