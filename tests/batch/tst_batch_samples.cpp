// One run with the real engine over the samples.

#include "program.h"
#include "support/sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

class TestBatchSamples : public QObject
{
    Q_OBJECT

private slots:
    void allSucceed();
    void engineSaysWhatIsWrong();
};

void TestBatchSamples::allSucceed()
{
    const Sandbox sandbox;
    const QString report = QFileInfo(sandbox.inputFolder()).path() + "/report";
    const QStringList samples = QDir(SAMPLES_FOLDER).entryList({"*.pdf"});
    QVERIFY(samples.size() >= 4);
    const BatchEnd end =
        runBatch(BATCH, {"--output", sandbox.outputFolder(), "--report", report, SAMPLES_FOLDER});
    QCOMPARE(end.errors, QString());
    QCOMPARE(end.status, 0);
    QCOMPARE(sandbox.outputs(), samples);
    QCOMPARE(sandbox.temporaryFiles(), QStringList());
    const QList<QJsonObject> results = linesOf(jsonLines(readFile(report)), "result");
    QCOMPARE(results.size(), samples.size());
    for (const QJsonObject &result : results) {
        const QFileInfo original(result.value("input").toString());
        const QFileInfo copy(result.value("output").toString());
        QCOMPARE(result.value("before").toInteger(), original.size());
        QCOMPARE(result.value("after").toInteger(), copy.size());
        QVERIFY(copy.size() > 0 && copy.size() < original.size());
        QVERIFY(readFile(copy.filePath()).startsWith("%PDF-"));
    }
}

void TestBatchSamples::engineSaysWhatIsWrong()
{
    const Sandbox sandbox;
    const QString input = sandbox.addInput("empty.pdf", 0);
    const BatchEnd end = runBatch(BATCH, {"--output", sandbox.outputFolder(), input});
    QVERIFY2(end.errors.startsWith("corvane-batch: " + input + ": corvgs: "),
             qPrintable(end.errors));
    QCOMPARE(end.status, 1);
    QCOMPARE(sandbox.outputs(), QStringList());
    QCOMPARE(sandbox.temporaryFiles(), QStringList());
}

QTEST_GUILESS_MAIN(TestBatchSamples)
#include "tst_batch_samples.moc"
