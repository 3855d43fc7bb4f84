// corvgs is killed at any moment of its run: by a signal that it can't catch, by one that it can.
#include "bench.h"
#include "samples.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <limits>

using namespace Qt::StringLiterals;

class TestKilled : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void atAnyMoment_data();
    void atAnyMoment();
    void nextRunClears();

private:
    void verifyOutput(const QString &output, int signal);

    Bench m_bench;
    int m_length = std::numeric_limits<int>::max(); // of the shortest undisturbed run, in ms
    int m_interrupted = 0;
};

void TestKilled::initTestCase()
{
    write(m_bench.in(u"a.pdf"_s), samplePdf(30, 200));
    // Some of them: the first may have had to wait for the disk.
    for (int count = 0; count < 3; ++count) {
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(m_bench.run(lineOf(m_bench)).status, 0);
        m_length = std::min(m_length, int(timer.elapsed()));
        QVERIFY(QFile::remove(m_bench.out(u"a.pdf"_s)));
    }
}

void TestKilled::atAnyMoment_data()
{
    QTest::addColumn<int>("percent"); // of an undisturbed run
    QTest::addColumn<int>("signal");
    for (int percent = 0; percent < 100; ++percent)
        QTest::addRow("%d", percent) << percent << (percent % 2 ? SIGKILL : SIGTERM);
}

void TestKilled::verifyOutput(const QString &output, int signal)
{
    if (!QFileInfo::exists(output))
        return;
    // Whole, or the placeholder of one who could not clear up.
    if (QFileInfo(output).size() > 0)
        QCOMPARE(tools::pages(output), 30);
    else
        QCOMPARE(signal, SIGKILL);
}

void TestKilled::atAnyMoment()
{
    QFETCH(int, percent);
    QFETCH(int, signal);
    const QString output = m_bench.out(QString::fromUtf8(QTest::currentDataTag()) + ".pdf"_L1);
    const QStringList before = namesIn(m_bench.temporary());
    QElapsedTimer timer;
    timer.start();
    const auto process = m_bench.start(Bench::line(m_bench.in(u"a.pdf"_s), output));
    if (process->waitForFinished(percent * m_length / 100)) {
        // The machine has become faster: later moments have to come earlier.
        m_length = std::min(m_length, int(timer.elapsed()));
    } else {
        ++m_interrupted;
        sendSignal(process->processId(), signal);
        QVERIFY(process->state() == QProcess::NotRunning || process->waitForFinished());
    }

    if (process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0)
        QCOMPARE(tools::pages(output), 30);
    QTRY_COMPARE_WITH_TIMEOUT(m_bench.engineCount(), 0, bound);
    verifyOutput(output, signal);
    for (const QString &name : namesIn(m_bench.out()))
        QVERIFY2(!name.startsWith(u'.') || signal == SIGKILL, qPrintable(name));
    // What an earlier kill left may still be there if this run didn't get as far as to clear up.
    for (const QString &name : namesIn(m_bench.temporary()))
        QVERIFY(signal == SIGKILL || before.contains(name));
}

void TestKilled::nextRunClears()
{
    QVERIFY2(m_interrupted > 50, "the moments came too late to test anything");
    QCOMPARE(m_bench.run(Bench::line(m_bench.in(u"a.pdf"_s), m_bench.out(u"last.pdf"_s))).status,
             0);
    QCOMPARE(namesIn(m_bench.temporary()), QStringList());
    for (const QString &name : namesIn(m_bench.out())) {
        QVERIFY2(!name.startsWith(u'.'), qPrintable(name));
        verifyOutput(m_bench.out(name), SIGKILL);
    }
}

QTEST_GUILESS_MAIN(TestKilled)
#include "tst_engine_killed.moc"
