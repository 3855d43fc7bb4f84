// What needs no file and no engine.

#include "batch/console.h"
#include "batch/input/shard.h"
#include "batch/refusal.h"
#include "batch/tally.h"
#include "batch/work/engine.h"
#include "batch/work/lastline.h"
#include "batch/work/processors.h"
#include "core/commandline.h"
#include "core/engineswitches.h"
#include "support/files.h"

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

using batch::Processors;

class TestBatchPieces : public QObject
{
    Q_OBJECT

private slots:
    void shard_data();
    void shard();
    void shardIsRefused_data();
    void shardIsRefused();
    void shardsTakeEachFileOnce();
    void quota_data();
    void quota();
    void defaultJobs_data();
    void defaultJobs();
    void shares_data();
    void shares();
    void lastLine_data();
    void lastLine();
    void lastLineKeepsLittle();
    void argumentsAreTheWindows();
    void tally();
    void tallyOfImpossibleSizes();
    void progress();
};

namespace {

QProcessEnvironment environmentOf(const QString &variables)
{
    QProcessEnvironment environment;
    for (const QString &variable : variables.split(' ', Qt::SkipEmptyParts))
        environment.insert(variable.section('=', 0, 0), variable.section('=', 1));
    return environment;
}

} // namespace

void TestBatchPieces::shard_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("variables");
    QTest::addColumn<int>("part");
    QTest::addColumn<int>("count");

    QTest::newRow("all") << "1/1"
                         << "" << 1 << 1;
    QTest::newRow("one of many") << "3/4"
                                 << "" << 3 << 4;
    QTest::newRow("numbers count, not variables")
        << "1/4"
        << "SLURM_ARRAY_TASK_ID=2 SLURM_ARRAY_TASK_COUNT=9" << 1 << 4;
    QTest::newRow("array from 1")
        << "auto"
        << "SLURM_ARRAY_TASK_ID=2 SLURM_ARRAY_TASK_MIN=1 SLURM_ARRAY_TASK_COUNT=4" << 2 << 4;
    QTest::newRow("array from 0")
        << "auto"
        << "SLURM_ARRAY_TASK_ID=0 SLURM_ARRAY_TASK_MIN=0 SLURM_ARRAY_TASK_COUNT=4" << 1 << 4;
    QTest::newRow("array 10-40:10")
        << "auto"
        << "SLURM_ARRAY_TASK_ID=30 SLURM_ARRAY_TASK_MIN=10 SLURM_ARRAY_TASK_STEP=10 "
           "SLURM_ARRAY_TASK_COUNT=4"
        << 3 << 4;
    QTest::newRow("indexed job") << "auto/8"
                                 << "JOB_COMPLETION_INDEX=7" << 8 << 8;
    QTest::newRow("array, number given")
        << "auto/8"
        << "SLURM_ARRAY_TASK_ID=5 SLURM_ARRAY_TASK_COUNT=4" << 5 << 8;
}

void TestBatchPieces::shard()
{
    QFETCH(QString, text);
    QFETCH(QString, variables);
    const batch::Shard shard = batch::shardOf(text, environmentOf(variables));
    QTEST(shard.part, "part");
    QTEST(shard.count, "count");
}

void TestBatchPieces::shardIsRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("variables");
    QTest::addColumn<QString>("expected");

    const QString form = "--shard takes I/N with I from 1 to N, or auto, not '%1'";
    for (const char *text : {"5/4", "0/4", "-1/4", "1", "1/0", "a/4", "1/b", "1/2/3", "", "/"})
        QTest::newRow(*text ? text : "empty") << text << "" << form.arg(text);
    QTest::newRow("no task")
        << "auto"
        << ""
        << "--shard auto finds neither SLURM_ARRAY_TASK_ID nor JOB_COMPLETION_INDEX";
    QTest::newRow("no number of parts")
        << "auto"
        << "JOB_COMPLETION_INDEX=1"
        << "--shard auto is not told the number of parts: give --shard auto/N";
    QTest::newRow("index beyond the parts") << "auto/4"
                                            << "JOB_COMPLETION_INDEX=4" << form.arg("auto/4");
    QTest::newRow("highest index") << "auto/4"
                                   << "JOB_COMPLETION_INDEX=2147483647" << form.arg("auto/4");
    QTest::newRow("widest array")
        << "auto"
        << "SLURM_ARRAY_TASK_ID=-2147483648 SLURM_ARRAY_TASK_MIN=2147483647 "
           "SLURM_ARRAY_TASK_COUNT=4"
        << form.arg("auto");
}

void TestBatchPieces::shardIsRefused()
{
    QFETCH(QString, text);
    QFETCH(QString, variables);
    QFETCH(QString, expected);
    try {
        batch::shardOf(text, environmentOf(variables));
        QFAIL("it was taken");
    } catch (const batch::Refusal &refusal) {
        QCOMPARE(refusal.text(), expected);
        QCOMPARE(refusal.code(), batch::ExitCode::usage);
    }
}

void TestBatchPieces::shardsTakeEachFileOnce()
{
    for (qsizetype place = 0; place < 20; ++place) {
        int takers = 0;
        for (int part = 1; part <= 7; ++part)
            takers += batch::Shard{.part = part, .count = 7}.has(place);
        QCOMPARE(takers, 1);
    }
}

void TestBatchPieces::quota_data()
{
    QTest::addColumn<QByteArray>("groups");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<double>("expected"); // 0: none

    using Bytes = QByteArray;
    QTest::newRow("no groups") << Bytes() << QStringList{} << 0.0;
    QTest::newRow("version 2, no limit")
        << Bytes("0::/job\n") << QStringList{"job/cpu.max=max 100000"} << 0.0;
    QTest::newRow("version 2") << Bytes("0::/job\n") << QStringList{"job/cpu.max=150000 100000"}
                               << 1.5;
    QTest::newRow("version 2, tighter above")
        << Bytes("0::/a/b\n") << QStringList{"a/b/cpu.max=400000 100000", "a/cpu.max=200000 100000"}
        << 2.0;
    QTest::newRow("version 2, container")
        << Bytes("0::/out/of/sight\n") << QStringList{"cpu.max=300000 100000"} << 3.0;
    QTest::newRow("version 1") << Bytes("3:memory:/job\n2:cpu,cpuacct:/job\n")
                               << QStringList{"cpu,cpuacct/job/cpu.cfs_quota_us=50000",
                                              "cpu,cpuacct/job/cpu.cfs_period_us=100000"}
                               << 0.5;
    QTest::newRow("version 1, no limit")
        << Bytes("2:cpu:/\n")
        << QStringList{"cpu/cpu.cfs_quota_us=-1", "cpu/cpu.cfs_period_us=100000"} << 0.0;
    QTest::newRow("another controller")
        << Bytes("2:cpuset:/\n") << QStringList{"cpuset/cpu.max=100000 100000"} << 0.0;
}

void TestBatchPieces::quota()
{
    QFETCH(QByteArray, groups);
    QFETCH(QStringList, files);
    QFETCH(double, expected);
    const QTemporaryDir mount;
    for (const QString &content : files) {
        const QString path = mount.filePath(content.section('=', 0, 0));
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        write(path, content.section('=', 1).toLatin1() + '\n');
    }
    QCOMPARE(batch::processorQuota(groups, mount.path()).value_or(0), expected);
}

void TestBatchPieces::defaultJobs_data()
{
    QTest::addColumn<int>("processors");
    QTest::addColumn<double>("quota"); // 0: none
    QTest::addColumn<int>("expected");
    QTest::newRow("one for each") << 8 << 0.0 << 8;
    QTest::newRow("as the quota grants") << 8 << 2.0 << 2;
    QTest::newRow("a part is worth one more") << 8 << 1.5 << 2;
    QTest::newRow("at least one") << 8 << 0.1 << 1;
    QTest::newRow("no more than processors") << 2 << 16.0 << 2;
    QTest::newRow("none known") << 0 << 0.0 << 1;
}

void TestBatchPieces::defaultJobs()
{
    QFETCH(int, processors);
    QFETCH(double, quota);
    const auto limit = quota > 0 ? std::optional(quota) : std::nullopt;
    QTEST(batch::defaultJobs(static_cast<std::size_t>(processors), limit), "expected");
}

void TestBatchPieces::shares_data()
{
    QTest::addColumn<Processors>("processors");
    QTest::addColumn<int>("jobs");
    QTest::addColumn<std::vector<Processors>>("expected");
    using Shares = std::vector<Processors>;
    QTest::newRow("one each") << Processors{0, 1} << 2 << Shares{{0}, {1}};
    QTest::newRow("neighbours") << Processors{0, 1, 2, 3} << 2 << Shares{{0, 1}, {2, 3}};
    QTest::newRow("one left over") << Processors{0, 1, 2, 3, 4} << 2 << Shares{{0, 1, 2}, {3, 4}};
    QTest::newRow("not from 0") << Processors{5, 9} << 2 << Shares{{5}, {9}};
    QTest::newRow("more engines") << Processors{4, 6} << 3 << Shares{{4}, {6}, {4}};
}

void TestBatchPieces::shares()
{
    QFETCH(Processors, processors);
    QFETCH(int, jobs);
    QTEST(batch::shares(processors, jobs), "expected");
}

void TestBatchPieces::lastLine_data()
{
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("own");
    using Bytes = QByteArray;
    QTest::newRow("silence") << Bytes() << ""
                             << "";
    QTest::newRow("its own") << Bytes("corvgs: no\n") << "corvgs: no"
                             << "corvgs: no";
    QTest::newRow("without its end") << Bytes("corvgs: no") << "corvgs: no"
                                     << "corvgs: no";
    QTest::newRow("the last of its own") << Bytes("corvgs: a\ncorvgs: b\n") << "corvgs: b"
                                         << "corvgs: b";
    QTest::newRow("others around it") << Bytes("noise\ncorvgs: a\nmore noise\n") << "corvgs: a"
                                      << "corvgs: a";
    QTest::newRow("only others") << Bytes("noise\nmore noise\n\n") << "more noise"
                                 << "";
    QTest::newRow("only others, no end") << Bytes("noise\nmore") << "more"
                                         << "";
}

void TestBatchPieces::lastLine()
{
    QFETCH(QByteArray, stream);
    batch::LastLine whole;
    whole.take(stream);
    QTEST(whole.text(), "text");
    QTEST(whole.ownText(), "own");
    batch::LastLine inPieces;
    for (const char byte : std::as_const(stream))
        inPieces.take(QByteArray(1, byte));
    QTEST(inPieces.text(), "text");
    QTEST(inPieces.ownText(), "own");
}

void TestBatchPieces::lastLineKeepsLittle()
{
    batch::LastLine line;
    for (int i = 0; i < 1000; ++i)
        line.take(QByteArray(10000, 'x'));
    QVERIFY(line.text().size() <= 4096);
    line.take("\ncorvgs: " + QByteArray(100000, 'y') + '\n');
    QVERIFY(line.ownText().startsWith("corvgs: yyy"));
    QVERIFY(line.ownText().size() <= 4096);
}

void TestBatchPieces::argumentsAreTheWindows()
{
    const batch::EngineSettings settings = {.switches = core::engineSwitches({}),
                                            .markFile = "/tmp/m y/pdfinfo.txt"};
    const QString windows = core::commandLine({.engine = "corvgs",
                                               .switches = settings.switches,
                                               .output = "/out/a b.pdf",
                                               .input = "/in/a b.pdf",
                                               .markArgument = " \"" + settings.markFile + '"'});
    QCOMPARE(QStringList("corvgs") +
                 batch::engineArguments(settings, "/out/a b.pdf", "/in/a b.pdf"),
             QProcess::splitCommand(windows));
}

void TestBatchPieces::tally()
{
    batch::Tally tally;
    QCOMPARE(tally.text(), "0 files: 0 compressed, 0 failed");
    tally.take({.input = "/in/b", .before = 815992, .after = 130545, .succeeded = true});
    tally.take({.input = "/in/a", .before = 100, .after = 0, .reason = "corvgs: no"});
    QCOMPARE(tally.text(), "2 files: 1 compressed, 1 failed; 816.0 KB to 130.5 KB, 84 % saved");
    QCOMPARE(tally.text(3),
             "5 files: 1 compressed, 1 failed, 3 left; 816.0 KB to 130.5 KB, 84 % saved");
    QCOMPARE(tally.failures().size(), 1U);
    QCOMPARE(tally.failures().front().text(), "/in/a: corvgs: no");
    QCOMPARE(tally.line(3), "{\"after\":130545,\"before\":815992,\"event\":\"totals\",\"failed\":1,"
                            "\"files\":5,\"left\":3,\"succeeded\":1}\n");
}

// A report may be anybody's.
void TestBatchPieces::tallyOfImpossibleSizes()
{
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    batch::Tally tally;
    for (const char *input : {"a", "b"})
        tally.take({.input = input, .before = largest, .after = 1, .succeeded = true});
    QCOMPARE(tally.saved(), largest - 2);
}

void TestBatchPieces::progress()
{
    batch::Tally tally;
    QCOMPARE(batch::progressText(tally, 0, 5, 1), "0 of 5 files, 0 B saved");
    tally.take({.input = "a", .before = 2'000'000, .after = 500'000, .succeeded = true});
    tally.take({.input = "b"});
    QCOMPARE(batch::progressText(tally, 2, 8, 4),
             "2 of 10 files, 1.5 MB saved, 0.5 files/s, 00:16 left");
    QCOMPARE(batch::progressText(tally, 1, 7200, 1),
             "2 of 7202 files, 1.5 MB saved, 1.0 files/s, 2:00:00 left");
}

QTEST_GUILESS_MAIN(TestBatchPieces)
#include "tst_batch_pieces.moc"
