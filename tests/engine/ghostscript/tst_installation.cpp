#include "engine/ghostscript/installation.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class TestInstallation : public QObject
{
    Q_OBJECT

private slots:
    void configuredGhostscript();
    void ghostscriptInPath();
    void ghostscriptsFiles();
};

void TestInstallation::configuredGhostscript()
{
    QCOMPARE(engine::findGhostscript("/opt/gs"), std::string("/opt/gs"));
}

void TestInstallation::ghostscriptInPath()
{
    const QByteArray path = qgetenv("PATH");
    QTemporaryDir folder;
    QFile program(folder.filePath(u"gs"_s));
    QVERIFY(program.open(QIODevice::WriteOnly));
    QVERIFY(program.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    qputenv("PATH", "/nowhere::" + folder.path().toUtf8() + ":/bin");
    const std::string found = engine::findGhostscript({});
    qputenv("PATH", "/nowhere");
    const std::string none = engine::findGhostscript({});
    qputenv("PATH", path);
    QCOMPARE(found, program.fileName().toStdString());
    QCOMPARE(none, std::string());
}

void TestInstallation::ghostscriptsFiles()
{
    const auto files = engine::systemFilesOf("/opt/gs-10/bin/gs", "/home/zoe");
    const auto has = [&](const char *path) {
        return std::find(files.begin(), files.end(), path) != files.end();
    };
    for (const char *path :
         {"/opt/gs-10/lib", "/opt/gs-10/share/ghostscript", "/usr/lib", "/usr/share/fonts",
          "/usr/share/color", "/usr/share/poppler", "/usr/local/share/fonts", "/etc/fonts",
          "/etc/ghostscript", "/var/lib/ghostscript", "/var/cache/fontconfig",
          "/home/zoe/.local/share/fonts", "/home/zoe/.fonts", "/home/zoe/.config/fontconfig"})
        QVERIFY2(has(path), path);
    for (const char *path :
         {"/", "/etc", "/usr", "/usr/bin", "/home", "/home/zoe", "/tmp", "/proc"})
        QVERIFY2(!has(path), path);
}

QTEST_GUILESS_MAIN(TestInstallation)
#include "tst_installation.moc"
