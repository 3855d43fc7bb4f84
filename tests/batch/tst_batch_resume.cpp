// --resume after every point at which a run can have been killed, with the fake engine.

#include "program.h"
#include "support/fakeengine.h"
#include "support/files.h"
#include "support/sandbox.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <memory>

class TestBatchResume : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void afterAKill_data();
    void afterAKill();
    void nothingIsDoneTwice();
    void failuresCount();
    void deadStartsGiveTheirNamesBack();
    void keepsDatesOfRecoveredCopies();

private:
    BatchEnd resume(const QStringList &words = {}) const;
    void putReport(const QByteArray &lines) const;
    QByteArray line(const char *event, const QString &input, const QString &output) const;

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<FakeEngine> m_engine;
    QString m_report;
};

void TestBatchResume::init()
{
    m_sandbox.reset();
    m_engine.reset();
    m_sandbox = std::make_unique<Sandbox>();
    m_engine = std::make_unique<FakeEngine>();
    m_report = QFileInfo(m_sandbox->inputFolder()).path() + "/report";
}

BatchEnd TestBatchResume::resume(const QStringList &words) const
{
    return runBatch(FAKE_BATCH, QStringList({"--output", m_sandbox->outputFolder(), "--jobs", "1",
                                             "--report", m_report, "--resume"}) +
                                    words + QStringList(m_sandbox->inputFolder()));
}

void TestBatchResume::putReport(const QByteArray &lines) const
{
    write(m_report, "{\"event\":\"run\",\"program\":\"corvane-batch\"}\n" + lines);
}

QByteArray TestBatchResume::line(const char *event, const QString &input,
                                 const QString &output) const
{
    return QString("{\"event\":\"%1\",\"input\":\"%2/%3\",\"output\":\"%4\"}\n")
        .arg(event, m_sandbox->inputFolder(), input, m_sandbox->outputPath(output))
        .toUtf8();
}

void TestBatchResume::afterAKill_data()
{
    QTest::addColumn<QString>("inOutput"); // what the killed run left of a
    QTest::addColumn<QStringList>("started");
    QTest::addColumn<QString>("after"); // size of a's copy
    QTest::newRow("before the engine began") << "nothing" << QStringList{"a", "b"} << "6000";
    QTest::newRow("in the engine's work") << "placeholder" << QStringList{"a", "b"} << "6000";
    QTest::newRow("after the copy was whole") << "copy" << QStringList{"b"} << "1234";
}

void TestBatchResume::afterAKill()
{
    QFETCH(QString, inOutput);
    QFETCH(QStringList, started);
    QFETCH(QString, after);
    m_sandbox->addInput("a.pdf", 5000);
    m_sandbox->addInput("b.pdf", 5000);
    if (inOutput != "nothing")
        writeZeros(m_sandbox->outputPath("a.pdf"), inOutput == "copy" ? 1234 : 0);
    putReport(line("start", "a.pdf", "a.pdf"));
    QCOMPARE(resume().status, 0);
    QCOMPARE(m_engine->inputs(), started);
    QCOMPARE(m_sandbox->outputs(), QStringList({"a.pdf", "b.pdf"}));
    const QList<QJsonObject> results = linesOf(jsonLines(contentOf(m_report)), "result");
    QCOMPARE(column(results, "verdict"), QStringList({"Succeed", "Succeed"}));
    QCOMPARE(column(results, "after"), QStringList({after, "6000"}));
}

void TestBatchResume::nothingIsDoneTwice()
{
    for (const char *name : {"a.pdf", "b.pdf"})
        m_sandbox->addInput(name);
    const BatchEnd first = resume();
    const BatchEnd second = resume();
    QCOMPARE(m_engine->startCount(), 2);
    QCOMPARE(second.output, first.output);
    QCOMPARE(second.status, 0);
    m_sandbox->addInput("c.pdf");
    QCOMPARE(resume().status, 0);
    QCOMPARE(m_engine->inputs(), QStringList({"a", "b", "c"}));
    QCOMPARE(m_sandbox->outputs(), QStringList({"a.pdf", "b.pdf", "c.pdf"}));
}

// They had their turn, and are told again.
void TestBatchResume::failuresCount()
{
    m_engine->behave({.bytes = -1, .exitCode = 1, .complains = "corvgs: no\n"}, "bad");
    const QString bad = m_sandbox->addInput("bad.pdf");
    QCOMPARE(resume().status, 1);
    m_sandbox->addInput("good.pdf");
    const BatchEnd end = resume();
    QCOMPARE(end.errors, "corvane-batch: " + bad + ": corvgs: no\n");
    QCOMPARE(end.status, 1);
    QCOMPARE(m_engine->inputs(), QStringList({"bad", "good"}));
}

// One run was killed before a's engine began, the next one gave a's name to the other a and was
// killed, too: the copy under that name is not the first one's.
void TestBatchResume::deadStartsGiveTheirNamesBack()
{
    const QString dead = m_sandbox->addInput("2/a.pdf");
    const QString alive = m_sandbox->addInput("1/a.pdf");
    putReport(line("start", "2/a.pdf", "a.pdf"));
    m_engine->behave({.bytes = 6000});
    QStringList words = {"--output", m_sandbox->outputFolder(), "--report", m_report, "--resume"};
    QCOMPARE(runBatch(FAKE_BATCH, words + QStringList(alive)).status, 0);
    QCOMPARE(runBatch(FAKE_BATCH, words + QStringList({alive, dead})).status, 0);
    QCOMPARE(m_engine->startCount(), 2);
    QCOMPARE(m_sandbox->outputs(), QStringList({"a.pdf", "a0.pdf"}));
}

void TestBatchResume::keepsDatesOfRecoveredCopies()
{
    const QString input = m_sandbox->addInput("a.pdf");
    const QDateTime date(QDate(2001, 2, 3), QTime(4, 5, 6), Qt::UTC);
    QFile file(input);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(date, QFileDevice::FileModificationTime));
    file.close();
    writeZeros(m_sandbox->outputPath("a.pdf"), 1234);
    putReport(line("start", "a.pdf", "a.pdf"));
    QCOMPARE(resume({"--keep-dates"}).status, 0);
    QCOMPARE(QFileInfo(m_sandbox->outputPath("a.pdf")).lastModified().toUTC(), date);
}

QTEST_GUILESS_MAIN(TestBatchResume)
#include "tst_batch_resume.moc"
