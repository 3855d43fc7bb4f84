// The report: what is written can be read, and what isn't a report stays as it is.

#include "batch/refusal.h"
#include "batch/report/recovery.h"
#include "batch/report/reportfile.h"
#include "support/files.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using batch::History;
using batch::Line;
using batch::ReportFile;
using batch::Result;

namespace {

const batch::Versions versions = {.corvane = "2.0.0", .ghostscript = "10.00.0"};

const Result good = {.input = "/in/ä \"b\"\n.pdf",
                     .output = "/out/ä \"b\"\n.pdf",
                     .before = 3'000'000'000,
                     .after = 1234,
                     .succeeded = true,
                     .seconds = 1.25,
                     .copy = "corvgs: the original, rewritten"};
const Result bad = {.input = "/in/bad.pdf",
                    .output = "/out/bad.pdf",
                    .before = 5,
                    .reason = "corvgs: Ghostscript ended with status 1",
                    .seconds = 0.5};

} // namespace

class TestBatchReport : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void lineIsAsDocumented();
    void linesComeBack();
    void otherLines_data();
    void otherLines();
    void history();
    void historyKnowsTwice();
    void cutOffEndGoes();
    void refusals_data();
    void refusals();
    void oneRunAtATime();
    void recovery_data();
    void recovery();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void put(const QString &name, const QByteArray &content) const { write(path(name), content); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestBatchReport::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void TestBatchReport::lineIsAsDocumented()
{
    QCOMPARE(batch::resultLine(bad, versions),
             "{\"after\":0,\"before\":5,\"event\":\"result\",\"input\":\"/in/bad.pdf\","
             "\"output\":\"/out/bad.pdf\",\"reason\":\"corvgs: Ghostscript ended with status 1\","
             "\"seconds\":0.5,\"verdict\":\"Failed\","
             "\"versions\":{\"corvane\":\"2.0.0\",\"ghostscript\":\"10.00.0\"}}\n");
}

void TestBatchReport::linesComeBack()
{
    for (const Result &result : {good, bad}) {
        const QByteArray text = batch::resultLine(result, versions);
        QCOMPARE(text.count('\n'), 1);
        const auto line = batch::parseLine(text);
        QVERIFY(line && line->event == Line::Event::result);
        QCOMPARE(line->result.input, result.input);
        QCOMPARE(line->result.output, result.output);
        QCOMPARE(line->result.before, result.before);
        QCOMPARE(line->result.after, result.after);
        QCOMPARE(line->result.succeeded, result.succeeded);
        QCOMPARE(line->result.reason, result.reason);
        QCOMPARE(line->result.seconds, result.seconds);
        QCOMPARE(line->result.copy, result.copy);
    }
    const auto start = batch::parseLine(batch::startLine(good.input, good.output));
    QVERIFY(start && start->event == Line::Event::start);
    QCOMPARE(start->result.output, good.output);
    QVERIFY(batch::parseLine(batch::runLine(versions))->event == Line::Event::run);
    QVERIFY(batch::parseLine(batch::releaseLine("a", "b"))->event == Line::Event::release);
}

void TestBatchReport::otherLines_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text :
         {"", "\n", "text", "{}", "[]", "{\"event\":\"other\",\"input\":\"a\"}",
          "{\"event\":\"result\"}", "{\"event\":\"run\"}", "{\"event\":\"start\",\"input\":\"a\"",
          "3", "{\"event\":\"result\",\"input\":\"a\",\"before\":-1}",
          "{\"event\":\"result\",\"input\":\"a\",\"after\":-1}"})
        QTest::newRow(*text ? text : "empty") << QByteArray(text);
}

void TestBatchReport::otherLines()
{
    QFETCH(QByteArray, text);
    QVERIFY(!batch::parseLine(text));
}

void TestBatchReport::history()
{
    put("report", batch::runLine(versions) + batch::startLine("a", "A") +
                      batch::startLine("b", "B") + batch::resultLine(bad, versions) +
                      batch::releaseLine("b", "B") + batch::startLine("b", "B0") +
                      batch::startLine("c", "C") + batch::releaseLine("c", "C") +
                      batch::runLine(versions) + batch::startLine(good.input, good.output) +
                      batch::resultLine(good, versions));
    const History history = batch::readReport(path("report"));
    QCOMPARE(history.begun, (QHash<QString, QString>{{"a", "A"}, {"b", "B0"}}));
    QCOMPARE(QSet<QString>(history.results.keyBegin(), history.results.keyEnd()),
             QSet<QString>({good.input, bad.input}));
    QVERIFY(history.twice.isEmpty());
}

void TestBatchReport::historyKnowsTwice()
{
    put("report", batch::runLine(versions) + batch::resultLine(bad, versions) +
                      batch::resultLine(bad, versions));
    QCOMPARE(batch::readReport(path("report")).twice, QStringList(bad.input));
}

void TestBatchReport::cutOffEndGoes()
{
    const QByteArray whole = batch::runLine(versions) + batch::startLine("a", "A");
    const QByteArray cut = batch::resultLine(good, versions);
    for (qsizetype length = 0; length < cut.size(); ++length) {
        put("report", whole + cut.left(length));
        ReportFile report(path("report"), true);
        QVERIFY(report.history().begun.contains("a"));
        QVERIFY(report.appendSafely(batch::releaseLine("a", "A")));
        QCOMPARE(contentOf(path("report")), whole + batch::releaseLine("a", "A"));
    }
}

void TestBatchReport::refusals_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("resume");
    QTest::addColumn<QString>("expected");
    const QByteArray run = batch::runLine(versions);
    const QString no = "@REPORT is not a report: see its line %1";
    QTest::newRow("there already")
        << run << false << "@REPORT is there already: --resume goes on with it";
    QTest::newRow("text") << QByteArray("My diary\nis long\n") << true << no.arg(1);
    QTest::newRow("text without an end") << QByteArray("My diary") << true << no.arg(1);
    QTest::newRow("JSON without an end") << QByteArray("{\"a\":1}") << true << no.arg(1);
    QTest::newRow("no run") << batch::startLine("a", "A") << true << no.arg(1);
    QTest::newRow("text below") << run + "text\n" + run << true << no.arg(2);
    QTest::newRow("an empty line") << run + run + "\n" << true << no.arg(3);
}

void TestBatchReport::refusals()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, resume);
    QFETCH(QString, expected);
    put("report", content);
    try {
        ReportFile(path("report"), resume);
        QFAIL("it was taken");
    } catch (const batch::Refusal &refusal) {
        QCOMPARE(refusal.text(), expected.replace("@REPORT", path("report")));
        QCOMPARE(refusal.code(), batch::ExitCode::usage);
    }
    QCOMPARE(contentOf(path("report")), content);
}

void TestBatchReport::oneRunAtATime()
{
    ReportFile first(path("report"), true);
    try {
        ReportFile(path("report"), true);
        QFAIL("two runs write one report");
    } catch (const batch::Refusal &refusal) {
        QCOMPARE(refusal.text(), "another run writes the report " + path("report"));
        QCOMPARE(refusal.code(), batch::ExitCode::cannotWork);
    }
}

void TestBatchReport::recovery_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<bool>("recovered");
    QTest::addColumn<bool>("stays");
    QTest::newRow("a whole copy") << "file" << true << true;
    QTest::newRow("a placeholder") << "empty" << false << false;
    QTest::newRow("nothing") << "nothing" << false << false;
    QTest::newRow("a folder") << "folder" << false << true;
    QTest::newRow("a link to a file") << "link" << false << true;
    QTest::newRow("a link to an empty file") << "link to nothing" << false << true;
}

void TestBatchReport::recovery()
{
    QFETCH(QString, what);
    QFETCH(bool, recovered);
    QFETCH(bool, stays);
    put("in.pdf", "original");
    put("elsewhere", what == "link" ? "text" : "");
    const QString output = path("out.pdf");
    if (what == "file" || what == "empty")
        put("out.pdf", what == "file" ? "copy" : "");
    else if (what == "folder")
        QVERIFY(QDir().mkdir(output));
    else if (what.startsWith("link"))
        QVERIFY(QFile::link(path("elsewhere"), output));
    const auto result = batch::recover(output, path("in.pdf"));
    QCOMPARE(result.has_value(), recovered);
    QCOMPARE(QFileInfo::exists(output), stays);
    if (result) {
        QCOMPARE(result->before, 8);
        QCOMPARE(result->after, 4);
        QVERIFY(result->succeeded && !result->seconds);
    }
}

QTEST_GUILESS_MAIN(TestBatchReport)
#include "tst_batch_report.moc"
