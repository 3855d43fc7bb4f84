#include "sandbox.h"

#include <QDir>
#include <QFile>
#include <QSettings>

Sandbox::Sandbox()
    : m_formerTemporaryFolder(qgetenv("TMPDIR"))
{
    const QDir folder(m_folder.path());
    for (const char *name : {"tmp", "in", "out"}) {
        if (!folder.mkdir(QString::fromLatin1(name)))
            qFatal("no folder %s", name);
    }
    qputenv("TMPDIR", QFile::encodeName(m_folder.filePath("tmp")));
}

Sandbox::~Sandbox()
{
    qputenv("TMPDIR", m_formerTemporaryFolder);
}

QString Sandbox::settingsFile() const
{
    return m_folder.filePath("tmp/corvane.ini");
}

QString Sandbox::markFile() const
{
    return m_folder.filePath("tmp/pdfinfo.txt");
}

QString Sandbox::inputFolder() const
{
    return m_folder.filePath("in");
}

QString Sandbox::outputFolder() const
{
    return m_folder.filePath("out");
}

QString Sandbox::outputPath(const QString &name) const
{
    return outputFolder() + '/' + name;
}

QStringList Sandbox::outputs() const
{
    return namesIn(outputFolder());
}

QStringList Sandbox::temporaryFiles() const
{
    return namesIn(m_folder.filePath("tmp"));
}

QString Sandbox::addInput(const QString &name, qint64 size) const
{
    const QString path = inputFolder() + '/' + name;
    if (!QDir().mkpath(QFileInfo(path).path()))
        qFatal("no folder for %s", qPrintable(path));
    writeZeros(path, size);
    return path;
}

void Sandbox::store(const QString &key, const QString &value) const
{
    QSettings settings(settingsFile(), QSettings::IniFormat);
    settings.setValue(key, value);
}

QString Sandbox::stored(const QString &key) const
{
    return QSettings(settingsFile(), QSettings::IniFormat).value(key, "(absent)").toString();
}
