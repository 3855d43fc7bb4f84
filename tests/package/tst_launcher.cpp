// The launcher's choice of a folder for temporary files. A shell script in the program's place
// prints what it was given.

#include "support/files.h"
#include "support/tools.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

// The names that a shell would trip over.
constexpr const char *odd = "-n $(touch x) '\xc3\xa4'\n*";

void makeFolder(const QString &path, mode_t mode)
{
    QVERIFY(QDir().mkpath(path));
    QCOMPARE(chmod(qUtf8Printable(path), mode), 0);
}

mode_t modeOf(const QString &path)
{
    struct stat entry = {};
    return lstat(qUtf8Printable(path), &entry) == 0 ? entry.st_mode : 0;
}

QString user()
{
    return QString::number(geteuid());
}

} // namespace

class TestLauncher : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void leavesAPrivateFolderAlone_data();
    void leavesAPrivateFolderAlone();
    void makesAPrivateFolderInASharedOne_data();
    void makesAPrivateFolderInASharedOne();
    void findsItsFolderAgain();
    void avoidsAFolderThatIsTaken_data();
    void avoidsAFolderThatIsTaken();
    void distrustsAFolderThatOthersCanReplace_data();
    void distrustsAFolderThatOthersCanReplace();
    void passesArgumentsOn();
    void startsThroughALink();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QStringList start(const QString &temporaryFolder, const QStringList &arguments = {},
                      const QString &through = {}) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestLauncher::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    makeFolder(path("launcher"), 0755);
    makeFolder(path("bin"), 0755);
    QVERIFY(QFile::copy(LAUNCHER, path("launcher/corvane")));
    writeProgram(path("bin/corvane"), "#!/bin/sh\nprintf '%s\\0' \"$TMPDIR\" \"$@\"\n");
}

// The TMPDIR that the program got, then its arguments.
QStringList TestLauncher::start(const QString &temporaryFolder, const QStringList &arguments,
                                const QString &through) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TMPDIR", temporaryFolder);
    const tools::Result run = tools::run(through.isEmpty() ? path("launcher/corvane") : through,
                                         arguments, environment, path("launcher"));
    if (run.status != 0)
        return {QString::fromUtf8(run.errors)};
    QStringList words = QString::fromUtf8(run.output).split(QChar('\0'));
    words.removeLast();
    return words;
}

void TestLauncher::leavesAPrivateFolderAlone_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("link");
    QTest::newRow("plain") << "mine"
                           << "";
    QTest::newRow("odd name") << odd << "";
    QTest::newRow("through a link") << "mine"
                                    << "link";
}

void TestLauncher::leavesAPrivateFolderAlone()
{
    QFETCH(QString, name);
    QFETCH(QString, link);
    makeFolder(path(name), 0700);
    if (!link.isEmpty())
        QVERIFY(QFile::link(path(name), path(link)));
    QCOMPARE(start(path(link.isEmpty() ? name : link)), QStringList{path(name)});
    QVERIFY(QDir(path(name)).isEmpty());
}

void TestLauncher::makesAPrivateFolderInASharedOne_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<uint>("mode");
    QTest::newRow("as /tmp is") << "shared" << 01777U;
    QTest::newRow("odd name") << odd << 01777U;
    QTest::newRow("others can read") << "shared" << 0755U;
    QTest::newRow("the group can read") << "shared" << 0750U;
    QTest::newRow("others can pass") << "shared" << 0711U;
}

void TestLauncher::makesAPrivateFolderInASharedOne()
{
    QFETCH(QString, name);
    QFETCH(uint, mode);
    makeFolder(path(name), mode);
    const QString own = path(name) + "/corvane-" + user();
    QCOMPARE(start(path(name)), QStringList{own});
    QCOMPARE(modeOf(own), mode_t(S_IFDIR | 0700));
}

void TestLauncher::findsItsFolderAgain()
{
    makeFolder(path("shared"), 01777);
    const QStringList first = start(path("shared"));
    QCOMPARE(start(path("shared")), first);
    QCOMPARE(QDir(path("shared")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1);
}

void TestLauncher::avoidsAFolderThatIsTaken_data()
{
    QTest::addColumn<QString>("by");
    QTest::newRow("an open folder") << "folder";
    QTest::newRow("a link to a private folder") << "link";
    QTest::newRow("a link to nothing") << "broken link";
    QTest::newRow("a file") << "file";
}

void TestLauncher::avoidsAFolderThatIsTaken()
{
    QFETCH(QString, by);
    makeFolder(path("shared"), 01777);
    makeFolder(path("elsewhere"), 0700);
    const QString taken = path("shared/corvane-" + user());
    if (by == "folder")
        makeFolder(taken, 0777);
    else if (by == "file")
        QVERIFY(QFile(taken).open(QFile::WriteOnly));
    else
        QVERIFY(QFile::link(path(by == "link" ? "elsewhere" : "nothing"), taken));
    const QStringList first = start(path("shared"));
    QCOMPARE(first.size(), 1);
    QVERIFY2(first.constFirst().startsWith(taken + '.'), qPrintable(first.constFirst()));
    QCOMPARE(modeOf(first.constFirst()), mode_t(S_IFDIR | 0700));
    QCOMPARE(start(path("shared")), first);
}

void TestLauncher::distrustsAFolderThatOthersCanReplace_data()
{
    QTest::addColumn<uint>("mode");
    QTest::addColumn<QString>("name");
    QTest::newRow("others write above it") << 0777U << "above/mine";
    QTest::newRow("the group writes above it") << 0770U << "above/mine";
    QTest::newRow("others write in it") << 0777U << "above";
    QTest::newRow("no such folder") << 0755U << "above/none";
    QTest::newRow("a name that splits a command line") << 0755U << "above/a\"b";
}

// What is used then is in /tmp.
void TestLauncher::distrustsAFolderThatOthersCanReplace()
{
    QFETCH(uint, mode);
    QFETCH(QString, name);
    makeFolder(path("above/mine"), 0700);
    makeFolder(path("above/a\"b"), 0700);
    makeFolder(path("above"), mode);
    const bool mayStay = QFileInfo::exists("/tmp/corvane-" + user());
    const QStringList chosen = start(path(name));
    QCOMPARE(chosen.size(), 1);
    QVERIFY2(chosen.constFirst().startsWith("/tmp/corvane-" + user()),
             qPrintable(chosen.constFirst()));
    QCOMPARE(modeOf(chosen.constFirst()), mode_t(S_IFDIR | 0700));
    if (!mayStay)
        QDir().rmdir(chosen.constFirst());
}

void TestLauncher::passesArgumentsOn()
{
    makeFolder(path("mine"), 0700);
    const QStringList arguments = {"", "-style", "a  b", odd, "--"};
    QCOMPARE(start(path("mine"), arguments), QStringList(path("mine")) + arguments);
}

void TestLauncher::startsThroughALink()
{
    makeFolder(path("mine"), 0700);
    QVERIFY(QFile::link(path("launcher/corvane"), path(odd)));
    QCOMPARE(start(path("mine"), {}, path(odd)), QStringList{path("mine")});
}

QTEST_GUILESS_MAIN(TestLauncher)
#include "tst_launcher.moc"
