// A run that is killed again and again, with the real engine, and resumed each time. How often and
// over how many files say CORVANE_KILLS and CORVANE_KILL_FILES; script/soak takes 50 and 200.

#include "program.h"
#include "support/sandbox.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSet>
#include <QTest>

#include <csignal>

namespace {

constexpr int longestMore = 700; // ms, about what an engine takes for its file

int numberOf(const char *variable, int otherwise)
{
    return qEnvironmentVariableIsSet(variable) ? qEnvironmentVariableIntValue(variable) : otherwise;
}

// In folders, and with names that end up as one: "3.a.pdf" and "3.b.pdf".
void addInputs(const Sandbox &sandbox, int count)
{
    for (int i = 0; i < count; ++i) {
        const QString folder = sandbox.inputFolder() + QString("/%1").arg(i / 10);
        QDir().mkpath(folder);
        const QString name = QString("%1/%2.%3.pdf").arg(folder).arg(i % 10 / 2).arg(i % 2);
        if (!QFile::copy(SAMPLES_FOLDER "/text.pdf", name))
            qFatal("no input");
    }
}

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator entry(folder, QDir::Files | QDir::Hidden | QDir::System,
                       QDirIterator::Subdirectories);
    while (entry.hasNext())
        files.append(entry.next());
    files.sort();
    return files;
}

} // namespace

class TestBatchKilled : public QObject
{
    Q_OBJECT

private slots:
    void everyFileOnce();
};

void TestBatchKilled::everyFileOnce()
{
    const int files = numberOf("CORVANE_KILL_FILES", 20);
    const int kills = numberOf("CORVANE_KILLS", 5);
    const Sandbox sandbox;
    addInputs(sandbox, files);
    const QString report = QFileInfo(sandbox.inputFolder()).path() + "/report";
    const QStringList words = {
        "--output", sandbox.outputFolder(), "--jobs", "2", "--report", report,
        "--resume", sandbox.inputFolder()};
    const auto results = [&report] { return contentOf(report).count("\"event\":\"result\""); };
    QRandomGenerator random = QRandomGenerator::securelySeeded();
    int placeholders = 0;
    for (int kill = 0; kill < kills; ++kill) {
        // Each at a place of its own in the list, and at any moment of an engine's work.
        const qsizetype place = files * kill / (kills + 1);
        BatchRun run(BATCH, words);
        QVERIFY(QTest::qWaitFor([&] { return results() >= place; }, bound));
        QVERIFY(!run.endsWithin(random.bounded(longestMore)) || results() == files);
        run.signal(SIGKILL);
        run.wait();
        for (const QString &file : filesBelow(sandbox.outputFolder()))
            placeholders += QFileInfo(file).size() == 0;
    }
    qInfo("%d kills left %d placeholders", kills, placeholders);

    const BatchEnd end = runBatch(BATCH, words);
    QCOMPARE(end.errors, QString());
    QCOMPARE(end.status, 0);
    const QList<QJsonObject> lines = linesOf(jsonLines(contentOf(report)), "result");
    QStringList inputs = column(lines, "input");
    QStringList outputs = column(lines, "output");
    inputs.sort();
    outputs.sort();
    QCOMPARE(inputs, filesBelow(sandbox.inputFolder()));
    QCOMPARE(outputs, filesBelow(sandbox.outputFolder()));
    QCOMPARE(outputs.size(), files);
    for (const QString &output : outputs)
        QVERIFY2(contentOf(output).startsWith("%PDF-"), qPrintable(output));
    QCOMPARE(sandbox.temporaryFiles(), QStringList());
    QCOMPARE(runBatch(BATCH, {"--summary", report}).status, 0);
}

QTEST_GUILESS_MAIN(TestBatchKilled)
#include "tst_batch_killed.moc"
