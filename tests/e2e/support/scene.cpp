#include "scene.h"

#include "support/bound.h"

#include <QFile>
#include <QTest>

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

// One that nobody takes note of may stay as a zombie.
void awaitEndOf(qint64 process)
{
    const auto ended = [process] {
        const char state = stateOf(process);
        return state == 0 || state == 'Z';
    };
    if (!QTest::qWaitFor(ended, bound))
        qFatal("%lld has no end", static_cast<long long>(process));
}
