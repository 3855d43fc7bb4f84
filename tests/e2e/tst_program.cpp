// The built program, as its user starts it.

#include "support/bound.h"
#include "support/files.h"
#include "support/tools.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class TestProgram : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void programAndEngineLieSideBySide();
    void startsFromAnywhere_data();
    void startsFromAnywhere();
    void pluginsAreThoseOfItsTree();
    void installedTreeHasTheSameShape();

private:
    QString m_program = PROGRAM;
};

void TestProgram::initTestCase()
{
    QVERIFY(QFileInfo(m_program).isExecutable());
}

void TestProgram::programAndEngineLieSideBySide()
{
    const QDir bin = QFileInfo(m_program).dir();
    QVERIFY(QFileInfo(bin.filePath("corvgs")).isExecutable());
    QVERIFY(QFileInfo(bin.filePath("../Plugins/imageformats")).isDir());
}

void TestProgram::startsFromAnywhere_data()
{
    QTest::addColumn<bool>("throughALink");
    QTest::newRow("directly") << false;
    QTest::newRow("through a symbolic link") << true;
}

// It makes its own folder the current one, and finds the plug-ins that its pictures need.
void TestProgram::startsFromAnywhere()
{
    QFETCH(bool, throughALink);
    const QTemporaryDir elsewhere;
    QString start = m_program;
    if (throughALink) {
        start = elsewhere.filePath("a link");
        QVERIFY(QFile::link(m_program, start));
    }
    QProcess program;
    program.setWorkingDirectory(elsewhere.path());
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const char *folder : {"HOME", "TMPDIR"})
        environment.insert(folder, elsewhere.path());
    program.setProcessEnvironment(environment);
    program.start(start, QStringList());
    QVERIFY(program.waitForStarted(bound));
    const QString self = QString("/proc/%1/").arg(program.processId());
    // The last picture of the window is a JPEG: its plug-in is loaded when the window is built.
    QTRY_VERIFY_WITH_TIMEOUT(contentOf(self + "maps").contains("libqjpeg"), bound);
    QTRY_VERIFY_WITH_TIMEOUT(contentOf(self + "maps").contains("libqico"), bound);
    QCOMPARE(QFileInfo(self + "cwd").symLinkTarget(), QFileInfo(m_program).path());
    program.terminate();
    QVERIFY(program.waitForFinished(bound));
}

// Not those where Qt itself would look, but for the one of the screen, which comes before.
void TestProgram::pluginsAreThoseOfItsTree()
{
    const QTemporaryDir tree;
    const QString built = QFileInfo(m_program).path() + "/..";
    QVERIFY(QDir(tree.path()).mkdir("bin"));
    QCOMPARE(QProcess::execute("cp", {m_program, tree.filePath("bin")}), 0);
    QCOMPARE(QProcess::execute("cp", {"-rL", built + "/Plugins", tree.path()}), 0);
    QProcess program;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TMPDIR", tree.path());
    program.setProcessEnvironment(environment);
    program.start(tree.filePath("bin/corvane"), QStringList());
    QVERIFY(program.waitForStarted(bound));
    const QString maps = QString("/proc/%1/maps").arg(program.processId());
    for (const char *plugin : {"libqjpeg.so", "libqico.so"}) {
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(maps).contains(plugin), bound);
        const QByteArray from = tree.path().toUtf8() + "/Plugins/";
        for (const QByteArray &line : contentOf(maps).split('\n'))
            QVERIFY2(!line.contains(plugin) || line.contains(from), line);
    }
    program.terminate();
    QVERIFY(program.waitForFinished(bound));
}

void TestProgram::installedTreeHasTheSameShape()
{
    const QTemporaryDir root;
    tools::outputOf("cmake",
                    {"--install", QFileInfo(m_program).path() + "/..", "--prefix", root.path()});
    const QDir library(root.filePath("lib/corvane"));
    QVERIFY(QFileInfo(library.filePath("bin/corvane")).isExecutable());
    QVERIFY(QFileInfo(library.filePath("bin/corvgs")).isExecutable());
    QVERIFY(QFileInfo(library.filePath("Plugins/imageformats")).isDir());
}

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
