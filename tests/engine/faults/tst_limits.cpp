// An engine that uses up too much of something.
#include "faults.h"
#include "samples.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestLimits : public QObject
{
    Q_OBJECT

private slots:
    void burningTime();
    void eatingMemory();
    void talkingWithoutEnd();
    void writingWithoutEnd_data();
    void writingWithoutEnd();
    void fewDescriptors_data();
    void fewDescriptors();
};

void TestLimits::burningTime()
{
    Bench bench(samplePdf());
    bench.environment.insert(u"DRIVER_STALL"_s, u"1"_s);
    verifyFailure(bench.runStandin(u"loop"_s, Bench::Confined),
                  "used up its time without getting on", 1);
    verifyNothingLeft(bench);
}

void TestLimits::eatingMemory()
{
    Bench bench(samplePdf());
    QCOMPARE(bench.runStandin(u"memory"_s, Bench::Confined).status, 20);
    bench.environment.insert(u"DRIVER_MEMORY"_s, u"8192"_s);
    QCOMPARE(bench.runStandin(u"memory"_s, Bench::Confined).status, 10);
    bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, Bench::ghostscript());
    bench.environment.insert(u"DRIVER_MEMORY"_s, u"30"_s);
    QVERIFY(bench.run(lineOf(bench), Bench::driver(Bench::Confined)).status > 0);
    verifyNothingLeft(bench);
}

// Nobody has more of it in his memory than the bound.
void TestLimits::talkingWithoutEnd()
{
    Bench bench(samplePdf());
    const Run run = bench.runStandin(u"flood"_s, Bench::Confined);
    verifyFailure(run, "Ghostscript talked without end");
    QVERIFY2(run.output.size() < 20'000, qPrintable(QString::number(run.output.size())));
    QVERIFY(run.output.endsWith("[Ghostscript says more, which is left out]\n"));
    verifyNothingLeft(bench);
}

void TestLimits::writingWithoutEnd_data()
{
    QTest::addColumn<QString>("wish");
    QTest::newRow("copy") << u"fill:/dev/fd/3"_s;
    QTest::newRow("temporary files") << u"fill-many"_s;
}

void TestLimits::writingWithoutEnd()
{
    QFETCH(QString, wish);
    Bench bench(samplePdf());
    bench.environment.insert(u"DRIVER_OUTPUT"_s, u"40"_s);
    verifyFailure(bench.runStandin(wish, Bench::Confined),
                  "Ghostscript wrote far more than a copy of the document takes");
    verifyNothingLeft(bench);
}

void TestLimits::fewDescriptors_data()
{
    QTest::addColumn<int>("descriptors");
    for (int descriptors = 4; descriptors <= 20; ++descriptors)
        QTest::addRow("%d", descriptors) << descriptors;
}

// Whatever it can't open, it ends, with a whole copy or none. A folder that it could no longer open
// to remove goes with the next run.
void TestLimits::fewDescriptors()
{
#ifdef CORVANE_SANITIZE
    QSKIP("the sanitizer takes a sound object for a wild one when it has no descriptor for a pipe");
#endif
    QFETCH(int, descriptors);
    Bench bench(samplePdf());
    const Run run =
        bench.run(QStringList{u"--nofile=%1"_s.arg(descriptors), Bench::corvgs()} + lineOf(bench),
                  u"prlimit"_s);
    QVERIFY(run.status >= 0);
    QTRY_COMPARE_WITH_TIMEOUT(bench.engineCount(), 0, bound);
    QCOMPARE(namesIn(bench.out()).size(), run.status == 0 ? 1 : 0);
    QVERIFY(namesIn(bench.temporary()).size() <= 1);
    QCOMPARE(bench.run(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"b.pdf"_s))).status, 0);
    QCOMPARE(namesIn(bench.temporary()), QStringList());
}

QTEST_GUILESS_MAIN(TestLimits)
#include "tst_limits.moc"
