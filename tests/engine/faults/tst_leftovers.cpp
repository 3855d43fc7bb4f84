// What killed runs have left behind.
#include "faults.h"
#include "samples.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;

class TestLeftovers : public QObject
{
    Q_OBJECT

private slots:
    void afterAKill();
    void leftovers();
    void leftoversOfOthersStay();
};

// The next run finds it, wherever its folder for temporary files is, and may have the name.
void TestLeftovers::afterAKill()
{
    Bench bench(samplePdf());
    bench.setStandin(u"wait"_s);
    const auto process = bench.start(lineOf(bench), Bench::driver(Bench::Confined));
    QVERIFY(process->waitForReadyRead());
    sendSignal(process->processId(), SIGKILL);
    QVERIFY(process->waitForFinished());
    QTRY_COMPARE_WITH_TIMEOUT(bench.engineCount(), 0, bound);
    const Bench other;
    bench.environment.insert(u"TMPDIR"_s, other.temporary());
    // What a killed run left is on record in /var/tmp. Another test's run may be clearing it, too.
    int status = -1;
    QTRY_VERIFY_WITH_TIMEOUT(status == 0 || (status = bench.run(lineOf(bench)).status) == 0, bound);
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), 1);
}

void TestLeftovers::leftovers()
{
    Bench bench(samplePdf());
    const QString left = bench.temporary() + u"/corvgs-%1-abcdef"_s.arg(quint64(geteuid()));
    QVERIFY(QDir().mkpath(left + "/work"_L1));
    const QDir engines(left + "/work"_L1); // what Ghostscript itself may write to
    write(engines.filePath(u"gs_x"_s), "temporary");
    write(bench.out(u".corvgs-1-0"_s), "");
    write(bench.out(u"b.pdf"_s), "");
    write(bench.home(u"precious"_s), "mine");
    QVERIFY(QFile::link(bench.out(u".corvgs-1-0"_s), left + "/draft"_L1));
    QVERIFY(QFile::link(bench.out(u"b.pdf"_s), left + "/placeholder"_L1));
    // What an engine itself may have left must not lead the next run astray.
    QVERIFY(QFile::link(bench.home(), engines.filePath(u"link"_s)));
    QVERIFY(QFile::link(bench.home(u"precious"_s), engines.filePath(u"draft"_s)));

    QCOMPARE(bench.run(lineOf(bench)).status, 0);
    QCOMPARE(namesIn(bench.temporary()), QStringList());
    QCOMPARE(namesIn(bench.out()), QStringList{u"a.pdf"_s});
    QCOMPARE(contentOf(bench.home(u"precious"_s)), QByteArray("mine"));
}

void TestLeftovers::leftoversOfOthersStay()
{
    Bench bench(samplePdf());
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

    QCOMPARE(bench.run(lineOf(bench)).status, 0);
    const QStringList left = namesIn(bench.temporary());
    QCOMPARE(left.size(), 3); // the link, the other folder, and the one in use
    QVERIFY(left.contains(u"other"_s));
    QCOMPARE(contentOf(bench.home(u"precious"_s)), QByteArray("mine"));
    process->terminate();
    QVERIFY(process->waitForFinished());
    QCOMPARE(namesIn(bench.temporary()).size(), 2);
}

QTEST_GUILESS_MAIN(TestLeftovers)
#include "tst_leftovers.moc"
