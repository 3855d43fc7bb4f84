// Signals to corvane-batch while engines are at work.

#include "program.h"
#include "support/fakeengine.h"
#include "support/sandbox.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <csignal>
#include <memory>
#include <unistd.h>

namespace {

// Whoever has taken the orphan over may not have asked for its end yet.
bool isAlive(const QString &process)
{
    const QByteArray status = contentOf("/proc/" + process + "/stat");
    return !status.isEmpty() && !status.mid(status.lastIndexOf(')')).startsWith(") Z");
}

} // namespace

class TestBatchInterrupt : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void firstLetsFinish_data();
    void firstLetsFinish();
    void secondEnds_data();
    void secondEnds();
    void allDoneAnyway();
    void ignoredStaysIgnored();
    void enginesEndWithIt();
    void enginesAreOutOfTheTerminalsReach();

private:
    std::unique_ptr<BatchRun> start() const;
    QStringList events() const { return column(jsonLines(contentOf(m_report)), "event"); }

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<FakeEngine> m_engine;
    QString m_report;
};

void TestBatchInterrupt::init()
{
    m_sandbox.reset();
    m_engine.reset();
    m_sandbox = std::make_unique<Sandbox>();
    m_engine = std::make_unique<FakeEngine>();
    m_report = QFileInfo(m_sandbox->inputFolder()).path() + "/report";
    m_engine->behave({.gate = true});
    for (int i = 0; i < 4; ++i)
        m_sandbox->addInput(QString("%1.pdf").arg(i));
}

// With two engines at work, whose outputs are written but who wait at the gate.
std::unique_ptr<BatchRun> TestBatchInterrupt::start() const
{
    auto run = std::make_unique<BatchRun>(
        FAKE_BATCH, QStringList{"--output", m_sandbox->outputFolder(), "--jobs", "2", "--report",
                                m_report, "--resume", m_sandbox->inputFolder()});
    const auto areAtWork = [this] { return m_engine->startCount() - m_engine->endCount() == 2; };
    if (!QTest::qWaitFor(areAtWork, bound))
        qFatal("no engines");
    return run;
}

void TestBatchInterrupt::firstLetsFinish_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<int>("status");
    QTest::newRow("SIGINT") << SIGINT << 130;
    QTest::newRow("SIGTERM") << SIGTERM << 143;
}

void TestBatchInterrupt::firstLetsFinish()
{
    QFETCH(int, signal);
    QFETCH(int, status);
    const auto run = start();
    run->signal(signal);
    run->awaitErrors();
    m_engine->open();
    m_engine->open();
    const BatchEnd end = run->wait();
    QCOMPARE(end.status, status);
    QCOMPARE(end.errors, "corvane-batch: engines at work may finish, no more are started; a second "
                         "signal ends them\n");
    QCOMPARE(end.output,
             "4 files: 2 compressed, 0 failed, 2 left; 20 B to 12.0 KB, 59900 % larger\n");
    QCOMPARE(m_engine->startCount(), 2);
    QCOMPARE(m_engine->endCount(), 2);
}

void TestBatchInterrupt::secondEnds_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("status");
    QTest::newRow("SIGINT") << SIGINT << 130;
    QTest::newRow("SIGTERM") << SIGTERM << 143;
}

// Their files are not failed but left, and resumed.
void TestBatchInterrupt::secondEnds()
{
    QFETCH(int, first);
    QFETCH(int, status);
    m_engine->behave({.bytes = 0, .gate = true});
    auto run = start();
    run->signal(first);
    run->awaitErrors(); // two signals at once may be one
    run->signal(first);
    const BatchEnd end = run->wait();
    QCOMPARE(end.status, status);
    QCOMPARE(end.output, "4 files: 0 compressed, 0 failed, 4 left\n");
    QCOMPARE(m_engine->endCount(), 0);
    QCOMPARE(m_sandbox->outputs(), QStringList());
    QCOMPARE(events(), QStringList({"run", "start", "start", "release", "release"}));

    m_engine->behave({.bytes = 6000});
    QCOMPARE(runBatch(FAKE_BATCH, {"--output", m_sandbox->outputFolder(), "--report", m_report,
                                   "--resume", m_sandbox->inputFolder()})
                 .status,
             0);
    QCOMPARE(m_sandbox->outputs(), QStringList({"0.pdf", "1.pdf", "2.pdf", "3.pdf"}));
}

void TestBatchInterrupt::allDoneAnyway()
{
    for (int i = 2; i < 4; ++i)
        QVERIFY(QFile::remove(m_sandbox->inputFolder() + QString("/%1.pdf").arg(i)));
    const auto run = start();
    run->signal(SIGTERM);
    m_engine->open();
    m_engine->open();
    QCOMPARE(run->wait().status, 0);
}

// As for what a shell's script starts in the background.
void TestBatchInterrupt::ignoredStaysIgnored()
{
    std::signal(SIGINT, SIG_IGN);
    const auto run = start();
    std::signal(SIGINT, SIG_DFL);
    run->signal(SIGINT);
    for (int i = 0; i < 4; ++i)
        m_engine->open();
    QCOMPARE(run->wait().status, 0);
    QCOMPARE(m_sandbox->outputs().size(), 4);
}

void TestBatchInterrupt::enginesEndWithIt()
{
#ifndef Q_OS_LINUX
    QSKIP("only Linux has it");
#endif
    const auto run = start();
    const QStringList engines = m_engine->processNumbers();
    QCOMPARE(engines.size(), 2);
    for (const QString &engine : engines)
        QVERIFY(isAlive(engine));
    run->signal(SIGKILL);
    QCOMPARE(run->wait().status, 128 + SIGKILL);
    for (const QString &engine : engines)
        QTRY_VERIFY_WITH_TIMEOUT(!isAlive(engine), bound);
    QCOMPARE(m_engine->endCount(), 0);
}

void TestBatchInterrupt::enginesAreOutOfTheTerminalsReach()
{
    const auto run = start();
    for (const QString &engine : m_engine->processNumbers())
        QCOMPARE(getpgid(engine.toInt()), engine.toInt());
    for (int i = 0; i < 4; ++i)
        m_engine->open();
    QCOMPARE(run->wait().status, 0);
}

QTEST_GUILESS_MAIN(TestBatchInterrupt)
#include "tst_batch_interrupt.moc"
