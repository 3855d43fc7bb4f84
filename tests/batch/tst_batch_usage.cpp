// Bad command lines: one clear line, its exit status, and nothing written.

#include "program.h"
#include "support/fakeengine.h"
#include "support/files.h"
#include "support/sandbox.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTest>

#include <unistd.h>

class TestBatchUsage : public QObject
{
    Q_OBJECT

private slots:
    void refusals_data();
    void refusals();
    void othersSettings_data();
    void othersSettings();
    void noEngine();
    void engineWithoutGhostscript();
    void informs_data();
    void informs();
};

namespace {

// @OUT and @IN stand for the sandbox's.
QStringList filledIn(QStringList words, const Sandbox &sandbox)
{
    for (QString &word : words) {
        word.replace("@OUT", sandbox.outputFolder());
        word.replace("@IN", sandbox.inputFolder());
    }
    return words;
}

// The path and size of everything below.
QStringList tree(const QString &folder)
{
    QStringList all;
    QDirIterator entry(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (entry.hasNext()) {
        const QFileInfo file(entry.next());
        all.append(file.filePath() + ' ' + QString::number(file.isDir() ? 0 : file.size()));
    }
    all.sort();
    return all;
}

} // namespace

void TestBatchUsage::refusals_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const QString &words, int status,
                        const QString &expected) {
        QTest::newRow(name) << words.split(' ', Qt::SkipEmptyParts) << status << expected;
    };
    row("nothing", "", 2, "no output folder: give --output FOLDER");
    row("no paths", "--output @OUT", 2,
        "nothing to compress: give files, folders or --files0-from FILE");
    row("no output", "@IN", 2, "no output folder: give --output FOLDER");
    row("no value", "@IN --output", 2, "Missing value after '--output'.");
    row("a value too many", "--quiet=yes --output @OUT @IN", 2,
        "Unexpected value after '--quiet'.");
    row("unknown option", "--output @OUT --replace @IN", 2, "Unknown option 'replace'.");
    row("jobs 0", "--output @OUT --jobs 0 @IN", 2, "--jobs takes a number from 1 to 4096, not '0'");
    row("jobs in words", "--output @OUT --jobs all @IN", 2,
        "--jobs takes a number from 1 to 4096, not 'all'");
    row("too many jobs", "--output @OUT --jobs 4097 @IN", 2,
        "--jobs takes a number from 1 to 4096, not '4097'");
    row("shard 5/4", "--output @OUT --shard 5/4 @IN", 2,
        "--shard takes I/N with I from 1 to N, or auto, not '5/4'");
    row("resume without a report", "--output @OUT --resume @IN", 2,
        "--resume goes on with a report: give --report FILE");
    row("missing path", "--output @OUT @IN/a.pdf @IN/gone.pdf", 2,
        "no such file or folder: @IN/gone.pdf");
    row("output of itself", "--output @IN @IN", 2,
        "the output folder is a folder to compress: @IN");
    row("missing list", "--output @OUT --files0-from @IN/gone", 2,
        "the list @IN/gone can't be read: No such file or directory");
    row("a folder as list", "--output @OUT --files0-from @IN", 2,
        "the list @IN can't be read: file to open is a directory");
    row("lines as list", "--output @OUT --files0-from @IN/lines", 2,
        "the names in @IN/lines have to end with NUL, as find -print0 writes them");
    row("no output folder", "--output @OUT/gone @IN", 3, "no output folder @OUT/gone");
    row("a file as output folder", "--output @IN/a.pdf @IN", 3, "no output folder @IN/a.pdf");
    row("no settings", "--output @OUT --settings @IN/gone.ini @IN", 2,
        "no settings file: @IN/gone.ini");
    row("half an assignment", "--output @OUT --set Image/ColorRes @IN", 2,
        "--set takes KEY=VALUE, not 'Image/ColorRes'");
    row("unknown key", "--output @OUT --set Image/Color=1 @IN", 2,
        "no such option of the copies: Image/Color");
    row("a key in other case", "--output @OUT --set image/colorres=100 @IN", 2,
        "no such option of the copies: image/colorres");
    row("a folder's key", "--output @OUT --set dir/input=. @IN", 2,
        "no such option of the copies: dir/input");
    row("the description", "--output @OUT --set Annot/Tit=x @IN", 2,
        "no such option of the copies: Annot/Tit");
    row("no flag", "--output @OUT --set Fonts/Sub=yes @IN", 2,
        "Fonts/Sub takes Ok or No, not 'yes'");
    row("no item", "--output @OUT --set Image/ColorType=4 @IN", 2,
        "Image/ColorType takes 0 to 3, not '4'");
    row("no resolution", "--output @OUT --set Image/MonoRes=0 @IN", 2,
        "Image/MonoRes takes 1 to 9999 dpi, not '0'");
    row("a report that isn't one", "--output @OUT --resume --report @IN/lines @IN", 2,
        "@IN/lines is not a report: see its line 1");
    row("a report without resume", "--output @OUT --report @IN/lines @IN", 2,
        "@IN/lines is there already: --resume goes on with it");
    row("a folder as report", "--output @OUT --report @IN @IN", 2,
        "@IN is not a report: it is not a file");
    row("a report in no folder", "--output @OUT --report @OUT/gone/report @IN", 3,
        "the report @OUT/gone/report can't be written: No such file or directory");
    row("no report to add up", "--summary", 2, "no report to add up: give --summary REPORT...");
    row("a summary and more", "--summary --output @OUT @IN/lines", 2,
        "--summary takes reports, and not --output");
    row("a missing report", "--summary @IN/gone", 2,
        "the report @IN/gone can't be read: No such file or directory");
    row("adding up what is none", "--summary @IN/lines", 2,
        "@IN/lines is not a report: see its line 1");
}

void TestBatchUsage::refusals()
{
    QFETCH(QStringList, words);
    QFETCH(int, status);
    QFETCH(QString, expected);
    const Sandbox sandbox;
    const FakeEngine engine;
    sandbox.addInput("a.pdf");
    write(sandbox.inputFolder() + "/lines", "a.pdf\nb.pdf\n");
    const QString root = QFileInfo(sandbox.inputFolder()).path();
    const QStringList before = tree(root);
    const BatchEnd end = runBatch(FAKE_BATCH, filledIn(words, sandbox));
    QCOMPARE(end.errors, "corvane-batch: " + filledIn({expected}, sandbox).constFirst() + '\n');
    QCOMPARE(end.status, status);
    QCOMPARE(end.output, QString());
    QCOMPARE(tree(root), before);
    QCOMPARE(engine.startCount(), 0);
}

void TestBatchUsage::othersSettings_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("given");
    QTest::newRow("settings") << "corvane.ini" << false;
    QTest::newRow("mark file") << "pdfinfo.txt" << false;
    QTest::newRow("settings by name") << "corvane.ini" << true;
    QTest::newRow("mark file beside settings by name") << "pdfinfo.txt" << true;
}

// Root makes the file another user's. Others have a link to a file of root's.
void TestBatchUsage::othersSettings()
{
    QFETCH(QString, name);
    QFETCH(bool, given);
    const Sandbox sandbox;
    const FakeEngine engine;
    sandbox.store("Image/ColorRes", "100");
    const QString file = QFileInfo(sandbox.settingsFile()).path() + '/' + name;
    uint owner = 0;
    if (geteuid() == 0) {
        owner = 54321;
        if (!QFile::exists(file))
            writeZeros(file, 10);
        QCOMPARE(chown(qPrintable(file), owner, owner), 0);
    } else {
        QFile::remove(file);
        QVERIFY(QFile::link("/etc/passwd", file));
    }
    QStringList words = {"--output", sandbox.outputFolder(), sandbox.addInput("a.pdf")};
    if (given)
        words += {"--settings", sandbox.settingsFile()};
    const BatchEnd end = runBatch(FAKE_BATCH, words);
    QCOMPARE(
        end.errors,
        QString("corvane-batch: %1 is not yours: it belongs to user %2\n").arg(file).arg(owner));
    QCOMPARE(end.status, 2);
    QCOMPARE(engine.startCount(), 0);
}

void TestBatchUsage::noEngine()
{
    const Sandbox sandbox;
    const QString alone = sandbox.inputFolder() + "/corvane-batch";
    QVERIFY(QFile::copy(BATCH, alone));
    const BatchEnd end =
        runBatch(alone, {"--output", sandbox.outputFolder(), sandbox.addInput("a.pdf")});
    QCOMPARE(end.errors, "corvane-batch: no engine " + sandbox.inputFolder() +
                             "/corvgs: No such file or directory\n");
    QCOMPARE(end.status, 3);
}

void TestBatchUsage::engineWithoutGhostscript()
{
    const Sandbox sandbox;
    const QString alone = sandbox.inputFolder() + "/corvane-batch";
    QVERIFY(QFile::copy(BATCH, alone));
    writeProgram(sandbox.inputFolder() + "/corvgs",
                 "#!/bin/sh\necho 'corvgs: Ghostscript gs: No such file' >&2\nexit 127\n");
    const BatchEnd end =
        runBatch(alone, {"--output", sandbox.outputFolder(), sandbox.addInput("a.pdf")});
    QCOMPARE(end.errors,
             "corvane-batch: the engine can't work: corvgs: Ghostscript gs: No such file\n");
    QCOMPARE(end.status, 3);
}

void TestBatchUsage::informs_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("beginning");
    QTest::newRow("help") << "--help"
                          << "Usage: corvane-batch --output FOLDER [options] PATH...\n";
    QTest::newRow("version") << "--version"
                             << "corvane-batch ";
}

// In the bare locale of many batch systems, where Qt would warn.
void TestBatchUsage::informs()
{
    QFETCH(QString, word);
    QFETCH(QString, beginning);
    const QByteArray locale = qgetenv("LC_ALL");
    qputenv("LC_ALL", "C");
    const BatchEnd end = runBatch(BATCH, {word});
    qputenv("LC_ALL", locale);
    QVERIFY2(end.output.startsWith(beginning), qPrintable(end.output));
    QCOMPARE(end.errors, QString());
    QCOMPARE(end.status, 0);
}

QTEST_GUILESS_MAIN(TestBatchUsage)
#include "tst_batch_usage.moc"
