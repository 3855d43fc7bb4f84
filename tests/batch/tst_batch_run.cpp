// Whole runs with the fake engine.

#include "batch/work/processors.h"
#include "program.h"
#include "support/fakeengine.h"
#include "support/files.h"
#include "support/sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QStringList sorted(QStringList words)
{
    words.sort();
    return words;
}

// "0-2,5" as the system writes it.
batch::Processors numbersOf(const QString &text)
{
    batch::Processors numbers;
    for (const QString &range : text.split(',')) {
        for (int number = range.section('-', 0, 0).toInt();
             number <= range.section('-', -1).toInt(); ++number)
            numbers.push_back(number);
    }
    return numbers;
}

} // namespace

class TestBatchRun : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void everyFileOnceInOrder();
    void foldersKeepTheirTree();
    void namesOfEnginesAtWorkAreTaken();
    void takenMeanwhile();
    void sideBySide();
    void enginesShareTheProcessors();
    void verdicts_data();
    void verdicts();
    void reportSaysWhatBecameTheCopy();
    void report();
    void settings_data();
    void settings();
    void settingsByName();
    void ownOptionsOfTheWindow();
    void listFromStandardInput();
    void shards();
    void dryRun();
    void keepsDates();
    void quiet();
    void json();
    void nothingToDo();
    void progressOnATerminalOnly();
    void foldersThatCantBeMade();
    void reportOnAFullDisk();
    void summary();

private:
    BatchEnd run(const QStringList &words) const;
    QStringList outputsOfStarts() const;
    QList<QJsonObject> lines() const { return jsonLines(contentOf(m_report)); }

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<FakeEngine> m_engine;
    QString m_report;
};

void TestBatchRun::init()
{
    m_sandbox.reset(); // before the next one, which remembers the environment
    m_engine.reset();
    m_sandbox = std::make_unique<Sandbox>();
    m_engine = std::make_unique<FakeEngine>();
    m_report = QFileInfo(m_sandbox->inputFolder()).path() + "/report";
}

BatchEnd TestBatchRun::run(const QStringList &words) const
{
    return runBatch(FAKE_BATCH, QStringList({"--output", m_sandbox->outputFolder()}) + words);
}

QStringList TestBatchRun::outputsOfStarts() const
{
    QStringList outputs;
    for (const QStringList &start : m_engine->starts()) {
        const QString word = start.filter("-sOutputFile=").value(0);
        outputs.append(QDir(m_sandbox->outputFolder()).relativeFilePath(word.section('=', 1)));
    }
    return outputs;
}

void TestBatchRun::everyFileOnceInOrder()
{
    for (const char *name : {"c.pdf", "a.pdf", "b.x.pdf"})
        m_sandbox->addInput(name, 12000);
    const BatchEnd end = run({"--jobs", "1", m_sandbox->inputFolder()});
    QCOMPARE(end.output, "3 files: 3 compressed, 0 failed; 36.0 KB to 18.0 KB, 50 % saved\n");
    QCOMPARE(end.errors, QString());
    QCOMPARE(end.status, 0);
    QCOMPARE(m_engine->inputs(), QStringList({"a", "b", "c"}));
    QCOMPARE(m_sandbox->outputs(), QStringList({"a.pdf", "b.pdf", "c.pdf"}));
}

void TestBatchRun::foldersKeepTheirTree()
{
    for (const char *name : {"a.pdf", "x/a.pdf", "x/y/a.pdf", "z/a.pdf"})
        m_sandbox->addInput(name);
    const QString alone = m_sandbox->addInput("x/alone.pdf");
    QCOMPARE(run({"--jobs", "1", alone, m_sandbox->inputFolder()}).status, 0);
    QCOMPARE(outputsOfStarts(),
             QStringList({"alone.pdf", "a.pdf", "x/a.pdf", "x/y/a.pdf", "z/a.pdf"}));
}

// None of them has a file yet when the others start.
void TestBatchRun::namesOfEnginesAtWorkAreTaken()
{
    m_engine->behave({.bytes = -1, .gate = true});
    QStringList words = {"--jobs", "3"};
    for (const char *name : {"1/a.pdf", "2/a.pdf", "3/a.b.pdf"})
        words.append(m_sandbox->addInput(name));
    BatchRun running(FAKE_BATCH, QStringList({"--output", m_sandbox->outputFolder()}) + words);
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 3, bound);
    for (int i = 0; i < 3; ++i)
        m_engine->open();
    QCOMPARE(running.wait().status, 1);
    QCOMPARE(sorted(outputsOfStarts()), QStringList({"a.pdf", "a0.pdf", "a00.pdf"}));
}

void TestBatchRun::takenMeanwhile()
{
    m_engine->take("a");
    m_engine->take("a0");
    const QString input = m_sandbox->addInput("a.pdf");
    QCOMPARE(run({"--report", m_report, input}).status, 0);
    QCOMPARE(outputsOfStarts(), QStringList({"a.pdf", "a0.pdf", "a00.pdf"}));
    QCOMPARE(m_sandbox->outputs(), QStringList("a00.pdf"));
    QCOMPARE(column(lines(), "event"),
             QStringList({"run", "start", "release", "start", "release", "start", "result"}));
    const QJsonObject result = lines().constLast();
    QCOMPARE(result.value("output").toString(), m_sandbox->outputPath("a00.pdf"));
}

void TestBatchRun::sideBySide()
{
    m_engine->behave({.gate = true});
    for (int i = 0; i < 7; ++i)
        m_sandbox->addInput(QString("%1.pdf").arg(i));
    BatchRun running(FAKE_BATCH, {"--output", m_sandbox->outputFolder(), "--jobs", "3",
                                  m_sandbox->inputFolder()});
    for (int started = 3; started <= 7; ++started) {
        QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), started, bound);
        QVERIFY(started - m_engine->endCount() <= 3);
        m_engine->open();
        QTRY_COMPARE_WITH_TIMEOUT(m_engine->endCount(), started - 2, bound);
    }
    m_engine->open();
    m_engine->open();
    QCOMPARE(running.wait().status, 0);
    QCOMPARE(m_sandbox->outputs().size(), 7);
}

void TestBatchRun::enginesShareTheProcessors()
{
    m_engine->behave({.gate = true});
    for (const char *name : {"a.pdf", "b.pdf"})
        m_sandbox->addInput(name);
    BatchRun running(FAKE_BATCH, {"--output", m_sandbox->outputFolder(), "--jobs", "2",
                                  m_sandbox->inputFolder()});
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 2, bound);
    m_engine->open();
    m_engine->open();
    QCOMPARE(running.wait().status, 0);
    std::vector<batch::Processors> found;
    for (const QString &text : m_engine->processors())
        found.push_back(numbersOf(text));
    std::ranges::sort(found);
#ifdef Q_OS_LINUX
    QCOMPARE(found, batch::shares(batch::usableProcessors(), 2));
#else
    QVERIFY(found.empty());
#endif
}

void TestBatchRun::verdicts_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<int>("signal");
    QTest::addColumn<QByteArray>("complains");
    QTest::addColumn<QString>("reason"); // empty: a success
    using Bytes = QByteArray;
    QTest::newRow("a copy") << qint64(6000) << 0 << 0 << Bytes() << "";
    QTest::newRow("a tiny copy is one") << qint64(100) << 0 << 0 << Bytes("noise\n") << "";
    QTest::newRow("the engine's line")
        << qint64(-1) << 1 << 0 << Bytes("noise\ncorvgs: no\nmore\n") << "corvgs: no";
    QTest::newRow("another line") << qint64(-1) << 1 << 0 << Bytes("noise\n") << "noise";
    QTest::newRow("no line") << qint64(-1) << 9 << 0 << Bytes() << "the engine ended with status 9";
    QTest::newRow("no copy") << qint64(-1) << 0 << 0 << Bytes() << "No copy was made";
    QTest::newRow("an empty copy") << qint64(0) << 0 << 0 << Bytes() << "No copy was made";
    QTest::newRow("a status and a copy")
        << qint64(6000) << 1 << 0 << Bytes("corvgs: no\n") << "corvgs: no";
    QTest::newRow("a crash") << qint64(0) << 0 << SIGSEGV << Bytes()
                             << "the engine was ended by signal 11";
}

void TestBatchRun::verdicts()
{
    QFETCH(qint64, bytes);
    QFETCH(int, exitCode);
    QFETCH(int, signal);
    QFETCH(QByteArray, complains);
    QFETCH(QString, reason);
    m_engine->behave(
        {.bytes = bytes, .exitCode = exitCode, .signal = signal, .complains = complains});
    const QString input = m_sandbox->addInput("a.pdf");
    const BatchEnd end = run({"--report", m_report, input});
    QCOMPARE(end.status, reason.isEmpty() ? 0 : 1);
    QCOMPARE(end.errors,
             reason.isEmpty() ? QString() : "corvane-batch: " + input + ": " + reason + '\n');
    const QJsonObject result = lines().constLast();
    QCOMPARE(result.value("verdict").toString(), reason.isEmpty() ? "Succeed" : "Failed");
    QCOMPARE(result.value("reason").toString(), reason);
    QCOMPARE(result.value("after").toInteger(), reason.isEmpty() ? bytes : 0);
    if (signal != 0)
        QCOMPARE(m_sandbox->outputs(), QStringList()); // its placeholder is gone
}

void TestBatchRun::reportSaysWhatBecameTheCopy()
{
    m_engine->behave({.says = "corvgs: something\nPage 1\ncorvgs: the original, untouched\n"});
    QCOMPARE(run({"--report", m_report, m_sandbox->addInput("a.pdf")}).status, 0);
    QCOMPARE(lines().constLast().value("copy").toString(), "corvgs: the original, untouched");
}

void TestBatchRun::report()
{
    m_engine->behave({.exitCode = 1}, "bad");
    for (const char *name : {"a.pdf", "bad.pdf", "c.pdf"})
        m_sandbox->addInput(name, 777);
    QCOMPARE(run({"--report", m_report, m_sandbox->inputFolder()}).status, 1);
    const QList<QJsonObject> results = linesOf(lines(), "result");
    QCOMPARE(sorted(column(results, "verdict")), QStringList({"Failed", "Succeed", "Succeed"}));
    QCOMPARE(sorted(column(results, "output")),
             QStringList({m_sandbox->outputPath("a.pdf"), m_sandbox->outputPath("bad.pdf"),
                          m_sandbox->outputPath("c.pdf")}));
    for (const QJsonObject &result : results) {
        QCOMPARE(result.value("before").toInteger(), 777);
        QVERIFY(result.value("seconds").toDouble(-1) >= 0);
        QCOMPARE(result.value("versions").toObject().value("ghostscript").toString(), "10.00.0");
        QVERIFY(!result.value("versions").toObject().value("corvane").toString().isEmpty());
    }
    QCOMPARE(linesOf(lines(), "start").size(), 3);
}

void TestBatchRun::settings_data()
{
    QTest::addColumn<QStringList>("assignments");
    QTest::addColumn<QString>("expected");
    QTest::newRow("default") << QStringList{} << "-dColorImageResolution=150";
    QTest::newRow("one") << QStringList{"Image/ColorRes=100"} << "-dColorImageResolution=100";
    QTest::newRow("the last counts")
        << QStringList{"Image/ColorRes=100", "Image/ColorRes=72"} << "-dColorImageResolution=72";
    QTest::newRow("a flag") << QStringList{"Fonts/Sub=No"} << "-dSubsetFonts=false";
    QTest::newRow("a password") << QStringList{"Secur/UsrPwd=a=b'c"} << "-sUserPassword=a=b'c";
}

void TestBatchRun::settings()
{
    QFETCH(QStringList, assignments);
    QFETCH(QString, expected);
    QStringList words = {m_sandbox->addInput("a.pdf")};
    for (const QString &assignment : assignments)
        words += {"--set", assignment};
    QCOMPARE(run(words).status, 0);
    const QStringList start = m_engine->starts().value(0);
    QVERIFY2(start.contains(expected), qPrintable(start.join(' ')));
    QCOMPARE(start.mid(start.indexOf("-f") + 2), QStringList()); // no mark file
}

void TestBatchRun::settingsByName()
{
    m_sandbox->store("Image/ColorRes", "99"); // the window's own, which do not count
    const QString folder = m_sandbox->outputPath("set up");
    QVERIFY(QDir().mkdir(folder));
    const QString settings = folder + "/scans.ini";
    write(settings, "[Image]\nColorRes=123\nGrayRes=124\n");
    writeZeros(folder + "/pdfinfo.txt", 10);
    QCOMPARE(
        run({"--settings", settings, "--set", "Image/GrayRes=125", m_sandbox->addInput("a.pdf")})
            .status,
        0);
    const QStringList start = m_engine->starts().value(0);
    QVERIFY(start.contains("-dColorImageResolution=123"));
    QVERIFY(start.contains("-dGrayImageResolution=125"));
    QCOMPARE(start.constLast(), folder + "/pdfinfo.txt");
}

void TestBatchRun::ownOptionsOfTheWindow()
{
    m_sandbox->store("Image/ColorRes", "99");
    writeZeros(m_sandbox->markFile(), 10);
    QCOMPARE(run({m_sandbox->addInput("a.pdf")}).status, 0);
    const QStringList start = m_engine->starts().value(0);
    QVERIFY(start.contains("-dColorImageResolution=99"));
    QCOMPARE(start.constLast(), m_sandbox->markFile());
}

// Its names arrive as they are, with the double quotes, too, that the window's line loses.
void TestBatchRun::listFromStandardInput()
{
    const QByteArray names = (m_sandbox->addInput("a\nb.pdf") + QChar('\0') +
                              m_sandbox->addInput("c \"d\".pdf") + QChar('\0'))
                                 .toUtf8();
    QProcess process;
    const QStringList arguments = {
        "--output", m_sandbox->outputFolder(), "--files0-from", "-", "--jobs", "1"};
    QCOMPARE(tools::run(process, FAKE_BATCH, arguments, names).status, 0);
    QCOMPARE(m_sandbox->outputs(), QStringList({"a\nb.pdf", "c \"d\".pdf"}));
    QCOMPARE(m_engine->inputs(), QStringList({"a\nb", "c \"d\""}));
}

void TestBatchRun::shards()
{
    for (int i = 0; i < 9; ++i)
        m_sandbox->addInput(QString("%1.pdf").arg(i));
    for (int part = 1; part <= 4; ++part)
        QCOMPARE(run({"--shard", QString("%1/4").arg(part), m_sandbox->inputFolder()}).status, 0);
    QCOMPARE(m_engine->startCount(), 9);
    QCOMPARE(m_sandbox->outputs().size(), 9);
}

void TestBatchRun::dryRun()
{
    const QString first = m_sandbox->addInput("1/a.pdf");
    const QString second = m_sandbox->addInput("2/a.pdf");
    writeZeros(m_sandbox->outputPath("a.pdf"), 10);
    const BatchEnd end = run({"--dry-run", "--report", m_report, first, second});
    QCOMPARE(end.output, first + " -> " + m_sandbox->outputPath("a0.pdf") + '\n' + second + " -> " +
                             m_sandbox->outputPath("a00.pdf") + '\n');
    QCOMPARE(end.status, 0);
    QCOMPARE(m_engine->startCount(), 0);
    QVERIFY(!QFile::exists(m_report));
    QCOMPARE(m_sandbox->outputs(), QStringList("a.pdf"));
}

void TestBatchRun::keepsDates()
{
    const QString input = m_sandbox->addInput("a.pdf");
    constexpr timespec date[] = {{.tv_sec = 1'000'000'000, .tv_nsec = 123'456'789},
                                 {.tv_sec = 1'100'000'000, .tv_nsec = 987'654'321}};
    QCOMPARE(utimensat(AT_FDCWD, qPrintable(input), date, 0), 0);
    QCOMPARE(run({"--keep-dates", input}).status, 0);
    struct stat copy = {};
    QCOMPARE(stat(qPrintable(m_sandbox->outputPath("a.pdf")), &copy), 0);
    QCOMPARE(copy.st_mtim.tv_sec, date[1].tv_sec);
    QCOMPARE(copy.st_mtim.tv_nsec, date[1].tv_nsec);
}

void TestBatchRun::quiet()
{
    m_engine->behave({.exitCode = 1, .complains = "corvgs: no\n"}, "bad");
    const QString bad = m_sandbox->addInput("bad.pdf");
    m_sandbox->addInput("good.pdf");
    const BatchEnd end = run({"--quiet", m_sandbox->inputFolder()});
    QCOMPARE(end.output, QString());
    QCOMPARE(end.errors, "corvane-batch: " + bad + ": corvgs: no\n");
}

void TestBatchRun::json()
{
    m_engine->behave({.exitCode = 1, .complains = "corvgs: no\n"}, "bad");
    m_sandbox->addInput("bad.pdf");
    m_sandbox->addInput("good.pdf");
    const BatchEnd end = run({"--json", "--jobs", "1", m_sandbox->inputFolder()});
    const QList<QJsonObject> said = jsonLines(end.output.toUtf8());
    QCOMPARE(column(said, "event"), QStringList({"start", "result", "start", "result", "totals"}));
    QCOMPARE(said.value(1).value("reason").toString(), "corvgs: no");
    QCOMPARE(said.constLast().value("failed").toInteger(), 1);
    QCOMPARE(end.errors, QString());
    QCOMPARE(end.status, 1);
}

void TestBatchRun::nothingToDo()
{
    const BatchEnd end = run({m_sandbox->inputFolder()});
    QCOMPARE(end.output, "0 files: 0 compressed, 0 failed\n");
    QCOMPARE(end.status, 0);
}

void TestBatchRun::progressOnATerminalOnly()
{
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    QVERIFY(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    const int side = ::open(ptsname(terminal), O_RDWR | O_NOCTTY);
    QVERIFY(side >= 0);
    QProcess process;
    process.setChildProcessModifier([side] { dup2(side, STDERR_FILENO); });
    const QString input = m_sandbox->addInput("a.pdf", 12000);
    tools::run(process, FAKE_BATCH, {"--output", m_sandbox->outputFolder(), input});
    char shown[1000] = {};
    QVERIFY(read(terminal, shown, sizeof shown - 1) > 0);
    QVERIFY2(QByteArray(shown).startsWith("\r1 of 1 files, 6.0 KB saved, "), shown);
    QVERIFY2(QByteArray(shown).endsWith("\r\033[K"), shown);
    close(side);
    close(terminal);
}

void TestBatchRun::foldersThatCantBeMade()
{
    writeZeros(m_sandbox->outputPath("x"), 10);
    const QString input = m_sandbox->addInput("x/a.pdf");
    const BatchEnd end = run({m_sandbox->inputFolder()});
    QCOMPARE(end.errors, "corvane-batch: " + input + ": the folder " + m_sandbox->outputPath("x") +
                             " can't be made\n");
    QCOMPARE(end.status, 1);
    QCOMPARE(m_engine->startCount(), 0);
}

// No engine starts that the report does not know of.
void TestBatchRun::reportOnAFullDisk()
{
    const QString input = m_sandbox->addInput("a.pdf");
    // A file of at most one block of 1024 bytes, and no signal for what goes beyond.
    const tools::Result run =
        tools::run("bash", {"-c", "trap '' XFSZ; ulimit -f 1; exec \"$@\"", "bash", FAKE_BATCH,
                            "--output", m_sandbox->outputFolder(), "--report", m_report, "--jobs",
                            "1", m_sandbox->addInput(QString(200, 'b') + ".pdf"),
                            m_sandbox->addInput(QString(200, 'c') + ".pdf"), input});
    QCOMPARE(run.status, 3);
    QVERIFY(run.errors.contains("the report " + m_report.toUtf8() + " can't be written: "));
    QCOMPARE(m_engine->startCount(), 1);
}

void TestBatchRun::summary()
{
    m_engine->behave({.exitCode = 1, .complains = "corvgs: no\n"}, "bad");
    const QString bad = m_sandbox->addInput("bad.pdf", 12000);
    const QString good = m_sandbox->addInput("good.pdf", 12000);
    const QString other = m_sandbox->addInput("other.pdf", 12000);
    const QString second = m_report + '2';
    QCOMPARE(run({"--report", m_report, good, bad}).status, 1);
    QCOMPARE(run({"--report", second, other}).status, 0);
    BatchEnd end = runBatch(FAKE_BATCH, {"--summary", m_report, second});
    QCOMPARE(end.output, "3 files: 2 compressed, 1 failed; 24.0 KB to 12.0 KB, 50 % saved\n");
    QCOMPARE(end.errors, "corvane-batch: " + bad + ": corvgs: no\n");
    QCOMPARE(end.status, 1);
    QCOMPARE(runBatch(FAKE_BATCH, {"--summary", second}).status, 0);

    // The same report once more, and a file that was begun and no more.
    write(second, contentOf(second) + "{\"event\":\"start\",\"input\":\"/in/x.pdf\","
                                      "\"output\":\"/out/x.pdf\"}\n");
    end = runBatch(FAKE_BATCH, {"--summary", "--json", second, second});
    QCOMPARE(end.errors, "corvane-batch: /in/x.pdf: begun and not done\n"
                         "corvane-batch: " +
                             other + ": done more than once\n");
    QCOMPARE(end.status, 1);
    QCOMPARE(jsonLines(end.output.toUtf8()).constLast().value("left").toInteger(), 1);
}

QTEST_GUILESS_MAIN(TestBatchRun)
#include "tst_batch_run.moc"
