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
    void twoRunsTakeNamesFromEachOther();
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
    const QList<QJsonObject> results = linesOf(jsonLines(contentOf(report)), "result");
    QCOMPARE(results.size(), samples.size());
    for (const QJsonObject &result : results) {
        const QFileInfo original(result.value("input").toString());
        const QFileInfo copy(result.value("output").toString());
        QCOMPARE(result.value("before").toInteger(), original.size());
        QCOMPARE(result.value("after").toInteger(), copy.size());
        QVERIFY(copy.size() > 0 && copy.size() < original.size());
        QVERIFY(contentOf(copy.filePath()).startsWith("%PDF-"));
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

// Each looks for free names while the other's engines take them.
void TestBatchSamples::twoRunsTakeNamesFromEachOther()
{
    const Sandbox sandbox;
    QStringList words[2];
    for (int i = 0; i < 8; ++i) {
        const QString name = sandbox.inputFolder() + QString("/%1/%2/a.pdf").arg(i % 2).arg(i);
        QVERIFY(QDir().mkpath(QFileInfo(name).path()));
        QVERIFY(QFile::copy(SAMPLES_FOLDER "/text.pdf", name));
        words[i % 2].append(name);
    }
    const QStringList output = {"--output", sandbox.outputFolder(), "--jobs", "2"};
    BatchRun one(BATCH, output + words[0]);
    BatchRun other(BATCH, output + words[1]);
    const BatchEnd ends[] = {one.wait(), other.wait()};
    for (const BatchEnd &end : ends) {
        QCOMPARE(end.errors, QString());
        QCOMPARE(end.status, 0);
    }
    QStringList expected;
    for (int zeros = 0; zeros < 8; ++zeros)
        expected.append('a' + QString(zeros, '0') + ".pdf");
    QStringList found = sandbox.outputs();
    found.sort();
    expected.sort();
    QCOMPARE(found, expected);
}

QTEST_GUILESS_MAIN(TestBatchSamples)
#include "tst_batch_samples.moc"
