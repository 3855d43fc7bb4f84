// Disks that are full, fail, or may not be written to.
#include "faults.h"
#include "samples.h"
#include "support/machine.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class TestDisks : public QObject
{
    Q_OBJECT

private slots:
    void fillingTheDisk_data();
    void fillingTheDisk();
    void almostFullDisk();
    void fullFolder();
    void fullTemporaryFolder();
    void everySize_data();
    void everySize();
    void failingDisk();
    void limitedFileSize();
    void readOnlyFolder();
};

void TestDisks::fillingTheDisk_data()
{
    QTest::addColumn<QString>("wish");
    QTest::addColumn<bool>("inOutput"); // the small disk: there, or in the temporary folder
    QTest::newRow("copy") << u"fill:/dev/fd/3"_s << true;
    QTest::newRow("removed temporary file") << u"fill-hidden"_s << false;
}

void TestDisks::fillingTheDisk()
{
    SKIP_IF(machine::whyNoTinyDisk());
    QFETCH(QString, wish);
    QFETCH(bool, inOutput);
    Bench bench(samplePdf());
    bench.setStandin(wish);
    bench.environment.insert(u"DRIVER_RESERVE"_s, u"24"_s);
    const Run run = runOnTinyDisk(bench, u"size=64m"_s, inOutput ? bench.out() : bench.temporary(),
                                  Bench::driver(Bench::Confined));
    verifyFailure(run, "Ghostscript was about to fill the disk");
    // The stand-in says that it is ready, if it gets so far; nothing is left on the disk.
    QCOMPARE(QByteArray(run.output).replace("ready\n", ""), QByteArray());
    verifyNothingLeft(bench);
}

// What little is free may be used.
void TestDisks::almostFullDisk()
{
    SKIP_IF(machine::whyNoTinyDisk());
    Bench bench(samplePdf());
    bench.environment.insert(u"DRIVER_RESERVE"_s, u"24"_s);
    const Run run = runOnTinyDisk(bench, u"size=4m"_s, bench.out(), Bench::driver(Bench::Confined));
    QCOMPARE(run.errors, QByteArray());
    QVERIFY2(run.output.endsWith("\na.pdf\n"), run.output);
    QCOMPARE(run.status, 0);
}

void TestDisks::fullFolder()
{
    SKIP_IF(machine::whyNoTinyDisk());
    for (const QString &size : {u"4k"_s, u"64k"_s, u"200k"_s}) {
        Bench bench(samplePdf(3, 800));
        const Run run = runOnTinyDisk(bench, "size="_L1 + size, bench.out());
        QVERIFY2(run.status > 0 && run.status != 99, run.errors);
        QCOMPARE(run.output.split('\n').last(), QByteArray());
        QVERIFY2(!run.output.contains("a.pdf") && !run.output.contains(".corvgs"), run.output);
        QCOMPARE(run.errors.count("corvgs: "), 1);
        QCOMPARE(namesIn(bench.temporary()), QStringList());
    }
    Bench bench(samplePdf(3, 800));
    const Run run = runOnTinyDisk(bench, u"size=4m"_s, bench.out());
    QCOMPARE(run.status, 0);
    QVERIFY2(run.output.endsWith("\na.pdf\n"), run.output);
}

void TestDisks::fullTemporaryFolder()
{
    SKIP_IF(machine::whyNoTinyDisk());
    Bench bench(samplePdf(3, 800));
    const Run run = runOnTinyDisk(bench, u"size=16k"_s, bench.temporary());
    QVERIFY2(run.status > 0 && run.status != 99, run.errors);
    QCOMPARE(run.errors.count("corvgs: "), 1);
    verifyNothingLeft(bench);
}

void TestDisks::everySize_data()
{
    QTest::addColumn<bool>("inOutput");
    QTest::addColumn<int>("kibibytes");
    for (int kibibytes = 4; kibibytes <= 64; kibibytes += 4) {
        QTest::addRow("copies, %d KiB", kibibytes) << true << kibibytes;
        QTest::addRow("temporary files, %d KiB", kibibytes) << false << kibibytes;
    }
}

// The copy is whole, or there is none and a reason. It is saved before its disk goes.
void TestDisks::everySize()
{
    SKIP_IF(machine::whyNoTinyDisk());
    QFETCH(bool, inOutput);
    QFETCH(int, kibibytes);
    Bench bench;
    QVERIFY(QFile::copy(QStringLiteral(SAMPLES_FOLDER "/text.pdf"), bench.in(u"a.pdf"_s)));
    const QString saved = bench.home(u"copy.pdf"_s);
    const QString corvgs = bench.home(u"corvgs"_s);
    writeProgram(corvgs, "#!/bin/sh\n'" + Bench::corvgs().toUtf8() + "' \"$@\" && cp '" +
                             bench.out(u"a.pdf"_s).toUtf8() + "' '" + saved.toUtf8() + "'\n");
    const Run run = runOnTinyDisk(bench, u"size=%1k"_s.arg(kibibytes),
                                  inOutput ? bench.out() : bench.temporary(), corvgs);
    QVERIFY(run.status >= 0 && run.status != 99);
    QCOMPARE(QFile::exists(saved), run.status == 0);
    if (run.status == 0)
        verifyWhole(saved, bench.in(u"a.pdf"_s));
    else
        QCOMPARE(run.errors.count("corvgs: "), 1);
    QCOMPARE(run.output.contains("a.pdf"), run.status == 0 && inOutput);
    QVERIFY2(!run.output.contains(".corvgs"), run.output);
}

// What was written fails only when it is to stay.
void TestDisks::failingDisk()
{
    Bench bench(samplePdf());
    verifyFailure(bench.runWithout(Bench::soundDisk, lineOf(bench)), ": Input/output error");
    verifyNothingLeft(bench);
}

void TestDisks::limitedFileSize()
{
    Bench bench(samplePdf(3, 800));
    const Run run =
        bench.run(QStringList{u"--fsize=100000"_s, Bench::corvgs()} + lineOf(bench), u"prlimit"_s);
    QVERIFY(run.status > 0);
    QCOMPARE(run.errors.count("corvgs: "), 1);
    verifyNothingLeft(bench);
}

void TestDisks::readOnlyFolder()
{
    SKIP_IF(machine::whyNoTinyDisk());
    Bench bench(samplePdf());
    const Run run = runOnTinyDisk(bench, u"ro"_s, bench.out());
    QCOMPARE(run.status, 1);
    QCOMPARE(run.errors,
             "corvgs: no output " + bench.out(u"a.pdf"_s).toUtf8() + ": Read-only file system\n");
    verifyNothingLeft(bench);
}

QTEST_GUILESS_MAIN(TestDisks)
#include "tst_disks.moc"
