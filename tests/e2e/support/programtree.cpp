#include "programtree.h"

#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

void copy(const QString &from, const QString &to)
{
    if (!QFile::copy(from, to))
        qFatal("cannot copy %s", qPrintable(from));
}

} // namespace

ProgramTree::ProgramTree()
    : m_root(m_folder.filePath(" Añadir – 報告書 №7 "))
{
    const QDir built(QFileInfo(QString(PROGRAM)).dir());
    if (!QDir().mkpath(m_root + "/bin"))
        qFatal("no folder %s", qPrintable(m_root));
    for (const char *name : {"corvane", "corvgs"})
        copy(built.filePath(name), m_root + "/bin/" + name);
    const QFileInfo plugins(built.filePath("../Plugins"));
    if (!QFile::link(plugins.canonicalFilePath(), m_root + "/Plugins"))
        qFatal("no link to %s", qPrintable(plugins.filePath()));
}

// A shell line lies in the engine's place; what it starts is the real one.
void ProgramTree::holdEngines(bool hold) const
{
    const QString real = engine() + ".real";
    if (!QFile::exists(real) && !QFile::rename(engine(), real))
        qFatal("no engine to hold");
    writeProgram(engine(), hold ? "#!/bin/sh\nkill -STOP $$\nexec \"$0.real\" \"$@\"\n"
                                : "#!/bin/sh\nexec \"$0.real\" \"$@\"\n");
}
