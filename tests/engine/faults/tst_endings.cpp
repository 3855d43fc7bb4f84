// How Ghostscript may end or fail to start, and who listens.
#include "faults.h"
#include "samples.h"

#include <QDir>
#include <QProcess>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class TestEndings : public QObject
{
    Q_OBJECT

private:
    static Run runScript(Bench &bench, const QByteArray &commands);

private slots:
    void endings_data();
    void endings();
    void couldNotWrite();
    void changedOriginal();
    void nameTaken_data();
    void nameTaken();
    void missingGhostscript();
    void notAProgram();
    void unreadableInput();
    void missingMark();
    void closedWindow();
    void closedStandardStreams();
    void nobodyReadsErrors();
};

// A Ghostscript that does something else besides, which confinement would forbid.
Run TestEndings::runScript(Bench &bench, const QByteArray &commands)
{
    const QString script = bench.home(u"gs"_s);
    writeProgram(script, "#!/bin/sh\n" + commands + "\nexec '" + Bench::ghostscript().toUtf8() +
                             "' \"$@\"\n");
    bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, script);
    return bench.run(lineOf(bench), Bench::driver(Bench::Unconfined));
}

void TestEndings::endings_data()
{
    QTest::addColumn<QString>("wish");
    QTest::addColumn<QByteArray>("reason");
    QTest::addColumn<int>("status");
    QTest::newRow("crash") << u"crash"_s << QByteArray("Ghostscript was ended by signal 11") << 139;
    QTest::newRow("status") << u"read:/nowhere"_s << QByteArray("Ghostscript ended with status 20")
                            << 20;
}

void TestEndings::endings()
{
    QFETCH(QString, wish);
    QFETCH(QByteArray, reason);
    QFETCH(int, status);
    Bench bench(samplePdf());
    verifyFailure(bench.runStandin(wish, Bench::Confined), reason, status);
    verifyNothingLeft(bench);
}

// Ghostscript ends with status 0 all the same.
void TestEndings::couldNotWrite()
{
    Bench bench(samplePdf());
    verifyFailure(runScript(bench, "echo 'ERROR: ioerror (-12) on closing pdfwrite device.' >&2"),
                  "Ghostscript could not write all that it made");
    verifyNothingLeft(bench);
}

void TestEndings::changedOriginal()
{
    Bench bench(samplePdf(3));
    verifyFailure(runScript(bench, "echo >>'" + bench.in(u"a.pdf"_s).toUtf8() + '\''),
                  "a.pdf: it was changed while it was read");
    verifyNothingLeft(bench);
}

void TestEndings::nameTaken_data()
{
    QTest::addColumn<bool>("atTheStart");
    QTest::newRow("at the start") << true;
    QTest::newRow("in the end") << false;
}

void TestEndings::nameTaken()
{
    QFETCH(bool, atTheStart);
    Bench bench(samplePdf());
    const QByteArray output = bench.out(u"a.pdf"_s).toUtf8();
    if (atTheStart)
        write(bench.out(u"a.pdf"_s), "theirs");
    verifyFailure(runScript(bench, "rm '" + output + "'; printf theirs >'" + output + '\''),
                  "the name of the copy is taken: " + output, 73);
    QCOMPARE(contentOf(bench.out(u"a.pdf"_s)), QByteArray("theirs"));
    QCOMPARE(namesIn(bench.out()), QStringList{u"a.pdf"_s});
    QCOMPARE(namesIn(bench.temporary()), QStringList());
}

void TestEndings::missingGhostscript()
{
    Bench bench(samplePdf());
    bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, u"/nowhere/gs"_s);
    const QString driver = Bench::driver(Bench::Confined);
    verifyFailure(bench.run(lineOf(bench), driver),
                  "Ghostscript /nowhere/gs: No such file or directory", 127);
    verifyNothingLeft(bench);
    verifyFailure(bench.run({u"--version"_s}, driver),
                  "Ghostscript /nowhere/gs: No such file or directory", 127);
}

void TestEndings::notAProgram()
{
    Bench bench(samplePdf());
    write(bench.home(u"gs"_s), "no program");
    bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, bench.home(u"gs"_s));
    const Run run = bench.run(lineOf(bench), Bench::driver(Bench::Confined));
    QCOMPARE(run.status, 127);
    QVERIFY(run.errors.contains("Permission denied") || run.errors.contains("Exec format error"));
    verifyNothingLeft(bench);
}

void TestEndings::unreadableInput()
{
    Bench bench;
    verifyFailure(bench.run(lineOf(bench)), "a.pdf: No such file or directory");
    QVERIFY(QDir().mkdir(bench.in(u"a.pdf"_s)));
    verifyFailure(bench.run(lineOf(bench)), "a.pdf: not a file");
    verifyNothingLeft(bench);
}

void TestEndings::missingMark()
{
    Bench bench(samplePdf());
    verifyFailure(bench.run(lineOf(bench, {}, bench.mark())),
                  "pdfinfo.txt: No such file or directory");
    verifyNothingLeft(bench);
}

// Nobody reads any more what the engine says, and more than a pipe holds.
void TestEndings::closedWindow()
{
    Bench bench(samplePdf());
    bench.setStandin(u"talk"_s);
    const QString driver = Bench::driver(Bench::Unconfined);
    const auto process = bench.start(lineOf(bench), driver);
    process->closeReadChannel(QProcess::StandardOutput);
    process->closeReadChannel(QProcess::StandardError);
    process->closeWriteChannel();
    QVERIFY(process->waitForFinished());
    QCOMPARE(process->exitCode(), 0);
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), 1);
}

void TestEndings::closedStandardStreams()
{
    Bench bench(samplePdf());
    const Run run = bench.run(
        QStringList{u"-c"_s, u"exec \"$0\" \"$@\" <&- >&- 2>&-"_s, Bench::corvgs()} + lineOf(bench),
        u"/bin/sh"_s);
    QCOMPARE(run.status, 0);
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), 1);
}

void TestEndings::nobodyReadsErrors()
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
    QCOMPARE(tools::run(process, Bench::corvgs(), lineOf(bench)).status, 1);
    for (const int end : ends)
        ::close(end);
}

QTEST_GUILESS_MAIN(TestEndings)
#include "tst_endings.moc"
