// Folders that are not what a run would like.
#include "faults.h"
#include "samples.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class TestFolders : public QObject
{
    Q_OBJECT

private slots:
    void strictUmask_data();
    void strictUmask();
    void missingFolder();
    void removedFolder();
    void folderWithoutAPath();
    void namedDraft();
    void folderWithoutUnnamedFiles();
};

void TestFolders::strictUmask_data()
{
    QTest::addColumn<QString>("umask");
    QTest::addColumn<int>("mode"); // of the copy
    QTest::newRow("nothing for others") << u"077"_s << 0600;
    QTest::newRow("no reading") << u"0477"_s << 0200;
    QTest::newRow("nothing for anybody") << u"0777"_s << 0;
}

// What the user doesn't want to have himself, the engine needs all the same while it works.
void TestFolders::strictUmask()
{
    QFETCH(QString, umask);
    QFETCH(int, mode);
    Bench bench(samplePdf());
    const QStringList words = QStringList{u"-c"_s, u"umask \"$0\"; exec \"$@\""_s, umask};
    const auto modeOf = [](const QString &path) {
        struct stat entry = {};
        return stat(qPrintable(path), &entry) == 0 ? int(entry.st_mode & 0777) : -1;
    };
    bench.setStandin(u"wait"_s);
    const auto process = bench.start(
        words + QStringList{Bench::driver(Bench::Confined)} + lineOf(bench), u"/bin/sh"_s);
    QVERIFY(process->waitForReadyRead());
    const QStringList folders = namesIn(bench.temporary());
    QCOMPARE(folders.size(), 1);
    QCOMPARE(modeOf(bench.temporary() + u'/' + folders.first()), 0700);
    QCOMPARE(modeOf(bench.temporary() + u'/' + folders.first() + "/work"_L1), 0700);
    process->terminate();
    QVERIFY(process->waitForFinished());
    verifyNothingLeft(bench);

    const Run run = bench.run(words + QStringList{Bench::corvgs()} + lineOf(bench), u"/bin/sh"_s);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(modeOf(bench.out(u"a.pdf"_s)), mode);
    QCOMPARE(chmod(qPrintable(bench.out(u"a.pdf"_s)), 0600), 0);
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), 1);
    QCOMPARE(namesIn(bench.temporary()), QStringList());
}

void TestFolders::missingFolder()
{
    Bench bench(samplePdf());
    verifyFailure(bench.run(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"none/a.pdf"_s))),
                  "none/a.pdf: No such file or directory");
    verifyNothingLeft(bench);
}

void TestFolders::removedFolder()
{
    Bench bench(samplePdf());
    QVERIFY(QDir().mkdir(bench.out(u"gone"_s)));
    bench.setStandin("unfolder:"_L1 + bench.out(u"gone"_s));
    const Run run = bench.run(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"gone/a.pdf"_s)),
                              Bench::driver(Bench::Unconfined));
    verifyFailure(run, "the copy's name was removed by somebody else: ");
    verifyNothingLeft(bench);
}

// A working folder so deep that no path leads to it: a killed run's draft could not be found again.
void TestFolders::folderWithoutAPath()
{
    Bench bench(samplePdf());
    int deepest = open(qPrintable(bench.home()), O_DIRECTORY);
    const QByteArray name(200, 'x');
    for (int depth = 0; depth < 30; ++depth) {
        QCOMPARE(mkdirat(deepest, name, 0700), 0);
        const int next = openat(deepest, name, O_DIRECTORY);
        ::close(deepest);
        deepest = next;
    }
    QCOMPARE(mkdirat(deepest, "out", 0700), 0);
    QProcess process;
    process.setProcessEnvironment(bench.environment);
    process.setChildProcessModifier([&] {
        if (fchdir(deepest) != 0)
            _exit(99);
    });
    const Run run =
        tools::run(process, Bench::corvgs(), Bench::line(bench.in(u"a.pdf"_s), u"out/a.pdf"_s));
    verifyFailure(run, "corvgs: no path to the output folder out/: ");
    QCOMPARE(unlinkat(deepest, "out", AT_REMOVEDIR), 0); // empty
    ::close(deepest);
    tools::outputOf(u"rm"_s, {u"-r"_s, bench.home(name)});
}

void TestFolders::namedDraft()
{
    Bench bench(samplePdf(2));
    bench.setStandin(u"list:/nowhere"_s);
    QCOMPARE(bench.runWithout(Bench::unnamedFiles, lineOf(bench)).status, 20);
    verifyNothingLeft(bench);
    bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, Bench::ghostscript());
    const Run run = bench.runWithout(Bench::unnamedFiles, lineOf(bench));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(namesIn(bench.out()), QStringList{u"a.pdf"_s});
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), 2);
    QCOMPARE(namesIn(bench.temporary()), QStringList());
}

// The portable library has none, like some file systems: the draft has a name while it is made.
void TestFolders::folderWithoutUnnamedFiles()
{
    const QString driver = Bench::driver(Bench::Unconfined);
    Bench bench(samplePdf(2));
    for (const int signal : {SIGTERM, SIGKILL}) {
        bench.setStandin(u"wait"_s);
        const auto process = bench.start(lineOf(bench), driver);
        QVERIFY(process->waitForReadyRead());
        QCOMPARE(namesIn(bench.out()).size(), 2);
        const QStringList engines = bench.engines();
        sendSignal(process->processId(), signal);
        QVERIFY(process->waitForFinished());
        for (const QString &engine : engines) // nothing else ends it on such a system
            sendSignal(engine.toInt(), SIGKILL);
        QTRY_COMPARE_WITH_TIMEOUT(bench.engineCount(), 0, bound);
    }
    // What a killed run left is on record in /var/tmp. Another test's run may be clearing it, too.
    bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, Bench::ghostscript());
    int status = -1;
    QTRY_VERIFY_WITH_TIMEOUT(status == 0 || (status = bench.run(lineOf(bench), driver).status) == 0,
                             bound);
    QTRY_COMPARE_WITH_TIMEOUT(namesIn(bench.out()), QStringList{u"a.pdf"_s}, bound);
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), 2);
    QCOMPARE(namesIn(bench.temporary()), QStringList());
}

QTEST_GUILESS_MAIN(TestFolders)
#include "tst_folders.moc"
