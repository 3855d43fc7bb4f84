// Whatever goes wrong, nothing half-made stays, and one line says why.
#include "bench.h"
#include "samples.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class TestFaults : public QObject
{
    Q_OBJECT

private slots:
    void endings_data();
    void endings();
    void missingGhostscript();
    void notAProgram();
    void burningTime();
    void eatingMemory();
    void writingWithoutEnd_data();
    void writingWithoutEnd();
    void fillingTheDisk_data();
    void fillingTheDisk();
    void almostFullDisk();
    void terminated_data();
    void terminated();
    void ignoredSignalStaysIgnored();
    void closedWindow();
    void closedStandardStreams();
    void nobodyReadsErrors();
    void fullFolder();
    void fullTemporaryFolder();
    void failingDisk();
    void limitedFileSize();
    void strictUmask_data();
    void strictUmask();
    void fewDescriptors_data();
    void fewDescriptors();
    void readOnlyFolder();
    void missingFolder();
    void removedFolder();
    void folderWithoutAPath();
    void namedDraft();
    void folderWithoutUnnamedFiles();
    void unreadableInput();
    void missingMark();
    void leftovers();
    void leftoversOfOthersStay();

private:
    static QStringList line(const Bench &bench);
    static void verifyNothingLeft(const Bench &bench);
    static void verifyFailure(const Run &run, const QByteArray &reason, int status = 1);
    static Run runOnTinyDisk(const Bench &bench, const QString &mount, const QString &tiny,
                             const QString &program = Bench::corvgs());
};

QStringList TestFaults::line(const Bench &bench)
{
    return Bench::line(bench.in(u"a.pdf"_s), bench.out(u"a.pdf"_s));
}

void TestFaults::verifyNothingLeft(const Bench &bench)
{
    QTRY_COMPARE_WITH_TIMEOUT(bench.engineCount(), 0, Bench::bound);
    QCOMPARE(Bench::namesIn(bench.out()), QStringList());
    QCOMPARE(Bench::namesIn(bench.temporary()), QStringList());
}

void TestFaults::verifyFailure(const Run &run, const QByteArray &reason, int status)
{
    const QByteArray ours = run.errors.mid(run.errors.indexOf("corvgs: "));
    QVERIFY2(ours.contains(reason), run.errors);
    QCOMPARE(ours.count('\n'), 1);
    QCOMPARE(run.status, status);
}

void TestFaults::endings_data()
{
    QTest::addColumn<QString>("wish");
    QTest::addColumn<QByteArray>("reason");
    QTest::addColumn<int>("status");
    QTest::newRow("crash") << u"crash"_s << QByteArray("Ghostscript was ended by signal 11") << 139;
    QTest::newRow("status") << u"read:/nowhere"_s << QByteArray("Ghostscript ended with status 20")
                            << 20;
    QTest::newRow("success without a copy")
        << u"arguments"_s << QByteArray("could not open the document or wrote no page") << 1;
}

void TestFaults::endings()
{
    QFETCH(QString, wish);
    QFETCH(QByteArray, reason);
    QFETCH(int, status);
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    verifyFailure(bench.runStandin(wish, Bench::Confined), reason, status);
    verifyNothingLeft(bench);
}

void TestFaults::missingGhostscript()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, u"/nowhere/gs"_s);
    const QString driver = Bench::driver(Bench::Confined);
    verifyFailure(bench.run(line(bench), driver),
                  "Ghostscript /nowhere/gs: No such file or directory", 127);
    verifyNothingLeft(bench);
    verifyFailure(bench.run({u"--version"_s}, driver),
                  "Ghostscript /nowhere/gs: No such file or directory", 127);
}

void TestFaults::notAProgram()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    write(bench.home(u"gs"_s), "no program");
    bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, bench.home(u"gs"_s));
    const Run run = bench.run(line(bench), Bench::driver(Bench::Confined));
    QCOMPARE(run.status, 127);
    QVERIFY(run.errors.contains("Permission denied") || run.errors.contains("Exec format error"));
    verifyNothingLeft(bench);
}

void TestFaults::burningTime()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    bench.environment.insert(u"DRIVER_STALL"_s, u"1"_s);
    verifyFailure(bench.runStandin(u"loop"_s, Bench::Confined),
                  "used up its time without writing anything", 1);
    verifyNothingLeft(bench);
}

void TestFaults::eatingMemory()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    QCOMPARE(bench.runStandin(u"memory"_s, Bench::Confined).status, 20);
    bench.environment.insert(u"DRIVER_MEMORY"_s, u"8192"_s);
    QCOMPARE(bench.runStandin(u"memory"_s, Bench::Confined).status, 10);
    bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, Bench::ghostscript());
    bench.environment.insert(u"DRIVER_MEMORY"_s, u"30"_s);
    QVERIFY(bench.run(line(bench), Bench::driver(Bench::Confined)).status > 0);
    verifyNothingLeft(bench);
}

void TestFaults::writingWithoutEnd_data()
{
    QTest::addColumn<QString>("wish");
    QTest::newRow("copy") << u"fill:/dev/fd/3"_s;
    QTest::newRow("temporary files") << u"fill-many"_s;
}

void TestFaults::writingWithoutEnd()
{
    QFETCH(QString, wish);
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    bench.environment.insert(u"DRIVER_OUTPUT"_s, u"40"_s);
    verifyFailure(bench.runStandin(wish, Bench::Confined),
                  "Ghostscript wrote far more than a copy of the document takes");
    verifyNothingLeft(bench);
}

void TestFaults::fillingTheDisk_data()
{
    QTest::addColumn<QString>("wish");
    QTest::addColumn<bool>("inOutput"); // the small disk: there, or in the temporary folder
    QTest::newRow("copy") << u"fill:/dev/fd/3"_s << true;
    QTest::newRow("removed temporary file") << u"fill-hidden"_s << false;
}

void TestFaults::fillingTheDisk()
{
    QFETCH(QString, wish);
    QFETCH(bool, inOutput);
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    bench.setStandin(wish);
    bench.environment.insert(u"DRIVER_RESERVE"_s, u"24"_s);
    const Run run = runOnTinyDisk(bench, u"size=64m"_s, inOutput ? bench.out() : bench.temporary(),
                                  Bench::driver(Bench::Confined));
    verifyFailure(run, "Ghostscript was about to fill the disk");
    QCOMPARE(run.output, QByteArray("ready\n")); // of the stand-in; nothing is left on the disk
    verifyNothingLeft(bench);
}

// What little is free may be used.
void TestFaults::almostFullDisk()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    bench.environment.insert(u"DRIVER_RESERVE"_s, u"24"_s);
    const Run run = runOnTinyDisk(bench, u"size=4m"_s, bench.out(), Bench::driver(Bench::Confined));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.output, QByteArray("a.pdf\n"));
    QCOMPARE(run.status, 0);
}

void TestFaults::terminated_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
    QTest::newRow("SIGQUIT") << SIGQUIT;
}

void TestFaults::terminated()
{
    QFETCH(int, signal);
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    bench.setStandin(u"wait"_s);
    const auto process = bench.start(line(bench), Bench::driver(Bench::Confined));
    QVERIFY(process->waitForReadyRead());
    QCOMPARE(bench.engineCount(), 1);
    sendSignal(process->processId(), signal);
    QVERIFY(process->waitForFinished());
    verifyFailure({process->exitCode(), {}, process->readAllStandardError()}, "ended by a signal",
                  128 + signal);
    verifyNothingLeft(bench);
}

void TestFaults::ignoredSignalStaysIgnored()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    bench.setStandin(u"wait"_s);
    const QString driver = Bench::driver(Bench::Confined);
    const auto process = bench.start(
        QStringList{u"-c"_s, u"trap '' HUP; exec \"$0\" \"$@\""_s, driver} + line(bench),
        u"/bin/sh"_s);
    QVERIFY(process->waitForReadyRead());
    static const QRegularExpression ignored(u"^SigIgn:\\s*([0-9a-f]+)$"_s,
                                            QRegularExpression::MultilineOption);
    const QString state = QString::fromLatin1(
        contentOf("/proc/"_L1 + QString::number(process->processId()) + "/status"_L1));
    QCOMPARE(ignored.match(state).captured(1).toULongLong(nullptr, 16) & 0xf, 1ULL << (SIGHUP - 1));
    sendSignal(process->processId(), SIGHUP);
    sendSignal(process->processId(), SIGTERM);
    QVERIFY(process->waitForFinished());
    QCOMPARE(process->exitCode(), 128 + SIGTERM);
    verifyNothingLeft(bench);
}

// Nobody reads any more what the engine says, and more than a pipe holds.
void TestFaults::closedWindow()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    bench.setStandin(u"talk"_s);
    const QString driver = Bench::driver(Bench::Unconfined);
    const auto process = bench.start(line(bench), driver);
    process->closeReadChannel(QProcess::StandardOutput);
    process->closeReadChannel(QProcess::StandardError);
    process->closeWriteChannel();
    QVERIFY(process->waitForFinished());
    QCOMPARE(process->exitCode(), 0);
    QCOMPARE(pagesOf(bench.out(u"a.pdf"_s)), 1);
}

void TestFaults::closedStandardStreams()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    const Run run = bench.run(
        QStringList{u"-c"_s, u"exec \"$0\" \"$@\" <&- >&- 2>&-"_s, Bench::corvgs()} + line(bench),
        u"/bin/sh"_s);
    QCOMPARE(run.status, 0);
    QCOMPARE(pagesOf(bench.out(u"a.pdf"_s)), 1);
}

void TestFaults::nobodyReadsErrors()
{
    int ends[2];
    QCOMPARE(pipe(ends), 0);
    fcntl(ends[1], F_SETFL, O_NONBLOCK);
    while (::write(ends[1], "x", 1) == 1) {
    }
    fcntl(ends[1], F_SETFL, 0);
    Bench bench;
    QProcess process;
    process.setProcessEnvironment(bench.environment);
    process.setChildProcessModifier([&] { dup2(ends[1], STDERR_FILENO); });
    process.start(Bench::corvgs(), line(bench));
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    for (const int end : ends)
        ::close(end);
}

// In a mount namespace of its own, a folder becomes another disk. Prints what is left in it. Only
// those who aren't root need a user namespace for that, which a changed root folder forbids.
Run TestFaults::runOnTinyDisk(const Bench &bench, const QString &mount, const QString &tiny,
                              const QString &program)
{
    QStringList arguments{u"--mount"_s};
    if (geteuid() != 0)
        arguments << u"--user"_s << u"--map-root-user"_s;
    arguments << u"sh"_s << u"-c"_s
              << u"disk=$1 options=$2; shift 2; mount -t tmpfs -o \"$options\" corvgs \"$disk\" "
                 "|| exit 99; \"$0\" \"$@\"; status=$?; ls -A \"$disk\"; exit $status"_s
              << program << tiny << mount;
    return bench.run(arguments + line(bench), u"unshare"_s);
}

void TestFaults::fullFolder()
{
    for (const QString &size : {u"4k"_s, u"64k"_s, u"200k"_s}) {
        Bench bench;
        write(bench.in(u"a.pdf"_s), samplePdf(3, 800));
        const Run run = runOnTinyDisk(bench, "size="_L1 + size, bench.out());
        QVERIFY2(run.status > 0 && run.status != 99, run.errors);
        QCOMPARE(run.output.split('\n').last(), QByteArray());
        QVERIFY2(!run.output.contains("a.pdf") && !run.output.contains(".corvgs"), run.output);
        QCOMPARE(run.errors.count("corvgs: "), 1);
        QCOMPARE(Bench::namesIn(bench.temporary()), QStringList());
    }
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf(3, 800));
    const Run run = runOnTinyDisk(bench, u"size=4m"_s, bench.out());
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output, QByteArray("a.pdf\n"));
    QCOMPARE(bench.run(line(bench)).status, 0);
    QCOMPARE_GT(QFileInfo(bench.out(u"a.pdf"_s)).size(), 200 * 1024);
}

void TestFaults::fullTemporaryFolder()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf(3, 800));
    const Run run = runOnTinyDisk(bench, u"size=16k"_s, bench.temporary());
    QVERIFY2(run.status > 0 && run.status != 99, run.errors);
    QCOMPARE(run.errors.count("corvgs: "), 1);
    verifyNothingLeft(bench);
}

// What was written fails only when it is to stay.
void TestFaults::failingDisk()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    verifyFailure(bench.runWithout(Bench::soundDisk, line(bench)), ": Input/output error");
    verifyNothingLeft(bench);
}

void TestFaults::limitedFileSize()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf(3, 800));
    const Run run =
        bench.run(QStringList{u"--fsize=100000"_s, Bench::corvgs()} + line(bench), u"prlimit"_s);
    QVERIFY(run.status > 0);
    QCOMPARE(run.errors.count("corvgs: "), 1);
    verifyNothingLeft(bench);
}

void TestFaults::strictUmask_data()
{
    QTest::addColumn<QString>("umask");
    QTest::addColumn<int>("mode"); // of the copy
    QTest::newRow("nothing for others") << u"077"_s << 0600;
    QTest::newRow("no reading") << u"0477"_s << 0200;
    QTest::newRow("nothing for anybody") << u"0777"_s << 0;
}

// What the user doesn't want to have himself, the engine needs all the same while it works.
void TestFaults::strictUmask()
{
    QFETCH(QString, umask);
    QFETCH(int, mode);
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    const QStringList words = QStringList{u"-c"_s, u"umask \"$0\"; exec \"$@\""_s, umask};
    const auto modeOf = [](const QString &path) {
        struct stat entry = {};
        return stat(qPrintable(path), &entry) == 0 ? int(entry.st_mode & 0777) : -1;
    };
    bench.setStandin(u"wait"_s);
    const auto process = bench.start(
        words + QStringList{Bench::driver(Bench::Confined)} + line(bench), u"/bin/sh"_s);
    QVERIFY(process->waitForReadyRead());
    const QStringList folders = Bench::namesIn(bench.temporary());
    QCOMPARE(folders.size(), 1);
    QCOMPARE(modeOf(bench.temporary() + u'/' + folders.first()), 0700);
    QCOMPARE(modeOf(bench.temporary() + u'/' + folders.first() + "/work"_L1), 0700);
    process->terminate();
    QVERIFY(process->waitForFinished());
    verifyNothingLeft(bench);

    const Run run = bench.run(words + QStringList{Bench::corvgs()} + line(bench), u"/bin/sh"_s);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(modeOf(bench.out(u"a.pdf"_s)), mode);
    QCOMPARE(chmod(qPrintable(bench.out(u"a.pdf"_s)), 0600), 0);
    QCOMPARE(pagesOf(bench.out(u"a.pdf"_s)), 1);
    QCOMPARE(Bench::namesIn(bench.temporary()), QStringList());
}

void TestFaults::fewDescriptors_data()
{
    QTest::addColumn<int>("descriptors");
    for (int descriptors = 4; descriptors <= 20; ++descriptors)
        QTest::addRow("%d", descriptors) << descriptors;
}

// Whatever it can't open, it ends, with a whole copy or none. A folder that it could no longer open
// to remove goes with the next run.
void TestFaults::fewDescriptors()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("the sanitizer takes a sound object for a wild one when it has no descriptor for a pipe");
#endif
    QFETCH(int, descriptors);
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    const Run run =
        bench.run(QStringList{u"--nofile=%1"_s.arg(descriptors), Bench::corvgs()} + line(bench),
                  u"prlimit"_s);
    QVERIFY(run.status >= 0);
    QTRY_COMPARE_WITH_TIMEOUT(bench.engineCount(), 0, Bench::bound);
    QCOMPARE(Bench::namesIn(bench.out()).size(), run.status == 0 ? 1 : 0);
    QVERIFY(Bench::namesIn(bench.temporary()).size() <= 1);
    QCOMPARE(bench.run(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"b.pdf"_s))).status, 0);
    QCOMPARE(Bench::namesIn(bench.temporary()), QStringList());
}

void TestFaults::readOnlyFolder()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    const Run run = runOnTinyDisk(bench, u"ro"_s, bench.out());
    QCOMPARE(run.status, 1);
    QCOMPARE(run.errors,
             "corvgs: no output " + bench.out(u"a.pdf"_s).toUtf8() + ": Read-only file system\n");
    verifyNothingLeft(bench);
}

void TestFaults::missingFolder()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    verifyFailure(bench.run(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"none/a.pdf"_s))),
                  "none/a.pdf: No such file or directory");
    verifyNothingLeft(bench);
}

void TestFaults::removedFolder()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    QVERIFY(QDir().mkdir(bench.out(u"gone"_s)));
    bench.setStandin("unfolder:"_L1 + bench.out(u"gone"_s));
    const Run run = bench.run(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"gone/a.pdf"_s)),
                              Bench::driver(Bench::Unconfined));
    verifyFailure(run, "output removed or changed by somebody else: ");
    verifyNothingLeft(bench);
}

// A working folder so deep that no path leads to it: a killed run's draft could not be found again.
void TestFaults::folderWithoutAPath()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
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
    process.start(Bench::corvgs(), Bench::line(bench.in(u"a.pdf"_s), u"out/a.pdf"_s));
    QVERIFY(process.waitForFinished());
    const QByteArray errors = process.readAllStandardError();
    QVERIFY2(errors.startsWith("corvgs: no path to the output folder out/: "), errors);
    QCOMPARE(errors.count('\n'), 1);
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(unlinkat(deepest, "out", AT_REMOVEDIR), 0); // empty
    ::close(deepest);
    QCOMPARE(QProcess::execute(u"rm"_s, {u"-r"_s, bench.home(name)}), 0);
}

void TestFaults::namedDraft()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf(2));
    bench.setStandin(u"list:/nowhere"_s);
    QCOMPARE(bench.runWithout(Bench::unnamedFiles, line(bench)).status, 20);
    verifyNothingLeft(bench);
    bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, Bench::ghostscript());
    const Run run = bench.runWithout(Bench::unnamedFiles, line(bench));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(Bench::namesIn(bench.out()), QStringList{u"a.pdf"_s});
    QCOMPARE(pagesOf(bench.out(u"a.pdf"_s)), 2);
    QCOMPARE(Bench::namesIn(bench.temporary()), QStringList());
}

// The portable library has none, like some file systems: the draft has a name while it is made.
void TestFaults::folderWithoutUnnamedFiles()
{
    const QString driver = Bench::driver(Bench::Unconfined);
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf(2));
    for (const int signal : {SIGTERM, SIGKILL}) {
        bench.setStandin(u"wait"_s);
        const auto process = bench.start(line(bench), driver);
        QVERIFY(process->waitForReadyRead());
        QCOMPARE(Bench::namesIn(bench.out()).size(), 2);
        const QStringList engines = bench.engines();
        sendSignal(process->processId(), signal);
        QVERIFY(process->waitForFinished());
        for (const QString &engine : engines) // nothing else ends it on such a system
            sendSignal(engine.toInt(), SIGKILL);
        QTRY_COMPARE_WITH_TIMEOUT(bench.engineCount(), 0, Bench::bound);
    }
    QCOMPARE(Bench::namesIn(bench.out()).size(), 2);
    QVERIFY(QFile::remove(bench.out(u"a.pdf"_s)));
    bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, Bench::ghostscript());
    QCOMPARE(bench.run(line(bench), driver).status, 0);
    QCOMPARE(Bench::namesIn(bench.out()), QStringList{u"a.pdf"_s});
    QCOMPARE(pagesOf(bench.out(u"a.pdf"_s)), 2);
    QCOMPARE(Bench::namesIn(bench.temporary()), QStringList());
}

void TestFaults::unreadableInput()
{
    Bench bench;
    verifyFailure(bench.run(line(bench)), "a.pdf: No such file or directory");
    QVERIFY(QDir().mkdir(bench.in(u"a.pdf"_s)));
    verifyFailure(bench.run(line(bench)), "a.pdf: not a file");
    verifyNothingLeft(bench);
}

void TestFaults::missingMark()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    verifyFailure(
        bench.run(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"a.pdf"_s), {}, bench.mark())),
        "pdfinfo.txt: No such file or directory");
    verifyNothingLeft(bench);
}

void TestFaults::leftovers()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    const QString left = bench.temporary() + u"/corvgs-%1-abcdef"_s.arg(quint64(geteuid()));
    QVERIFY(QDir().mkpath(left + "/work"_L1));
    const QDir engines(left + "/work"_L1); // what Ghostscript itself may write to
    write(engines.filePath(u"gs_x"_s), "temporary");
    write(bench.out(u".corvgs-1-0"_s), "a draft");
    write(bench.home(u"precious"_s), "mine");
    QVERIFY(QFile::link(bench.out(u".corvgs-1-0"_s), left + "/draft"_L1));
    // What an engine itself may have left must not lead the next run astray.
    QVERIFY(QFile::link(bench.home(), engines.filePath(u"link"_s)));
    QVERIFY(QFile::link(bench.home(u"precious"_s), engines.filePath(u"draft"_s)));

    QCOMPARE(bench.run(line(bench)).status, 0);
    QCOMPARE(Bench::namesIn(bench.temporary()), QStringList());
    QCOMPARE(Bench::namesIn(bench.out()), QStringList{u"a.pdf"_s});
    QCOMPARE(contentOf(bench.home(u"precious"_s)), QByteArray("mine"));
}

void TestFaults::leftoversOfOthersStay()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    write(bench.home(u"precious"_s), "mine");
    const QString prefix = bench.temporary() + u"/corvgs-%1-"_s.arg(quint64(geteuid()));
    QVERIFY(QFile::link(bench.home(), prefix + "linked"_L1));
    QVERIFY(QDir().mkpath(prefix + "memory"_L1));
    QVERIFY(QFile::link(bench.home(u"precious"_s), prefix + "memory/draft"_L1));
    QVERIFY(QDir().mkpath(bench.temporary() + "/other"_L1));
    // A run at work.
    Bench second;
    second.environment = bench.environment;
    second.setStandin(u"wait"_s);
    const auto process = second.start(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"b.pdf"_s)),
                                      Bench::driver(Bench::Confined));
    QVERIFY(process->waitForReadyRead());

    QCOMPARE(bench.run(line(bench)).status, 0);
    const QStringList left = Bench::namesIn(bench.temporary());
    QCOMPARE(left.size(), 3); // the link, the other folder, and the one in use
    QVERIFY(left.contains(u"other"_s));
    QCOMPARE(contentOf(bench.home(u"precious"_s)), QByteArray("mine"));
    process->terminate();
    QVERIFY(process->waitForFinished());
    QCOMPARE(Bench::namesIn(bench.temporary()).size(), 2);
}

QTEST_GUILESS_MAIN(TestFaults)
#include "tst_engine_faults.moc"
