// Nothing that was there before is changed.
#include "bench.h"
#include "samples.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int nameTaken = 73;

} // namespace

class TestUntouched : public QObject
{
    Q_OBJECT

private slots:
    void existing_data();
    void existing();
    void inputIsOutput_data();
    void inputIsOutput();
    void missingInputIsOutput();
    void bentLine_data();
    void bentLine();
    void placeholderIsThereFromTheStart();
    void placeholderThatSomebodyFilled();
    void neighbours();
};

void TestUntouched::existing_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"file", "empty file", "link", "dangling link", "folder", "fifo"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void TestUntouched::existing()
{
    QFETCH(QString, kind);
    Bench bench;
    const QString output = bench.out(u"a.pdf"_s);
    const QString target = bench.home(u"target"_s);
    write(bench.in(u"a.pdf"_s), samplePdf());
    if (kind.endsWith("file"_L1))
        write(output, kind == "file"_L1 ? "mine" : "");
    if (kind == "link"_L1)
        write(target, "mine");
    if (kind.endsWith("link"_L1))
        QVERIFY(QFile::link(target, output));
    if (kind == "folder"_L1)
        QVERIFY(QDir().mkdir(output));
    if (kind == "fifo"_L1)
        tools::outputOf(u"mkfifo"_s, {output});
    const QFileInfo before(output);
    const auto modified = before.lastModified();

    const Run run = bench.run(Bench::line(bench.in(u"a.pdf"_s), output));
    QCOMPARE(run.status, nameTaken);
    QCOMPARE(run.errors, "corvgs: the name of the copy is taken: " + output.toUtf8() + "\n");
    const QFileInfo after(output);
    QCOMPARE(after.isSymLink(), before.isSymLink());
    QCOMPARE(after.lastModified(), modified);
    QCOMPARE(namesIn(bench.out()), QStringList{u"a.pdf"_s});
    QCOMPARE(QFile::exists(target), kind == "link"_L1);
    if (kind == "file"_L1 || kind == "link"_L1)
        QCOMPARE(contentOf(output), QByteArray("mine"));
}

void TestUntouched::inputIsOutput_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"same name", "other spelling", "symbolic link", "hard link"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void TestUntouched::inputIsOutput()
{
    QFETCH(QString, way);
    Bench bench;
    const QString input = bench.in(u"a.pdf"_s);
    QString output = input;
    const QByteArray content = samplePdf(2);
    write(input, content);
    if (way == "other spelling"_L1)
        output = bench.in(u"../in/./a.pdf"_s);
    if (way.endsWith("link"_L1))
        output = bench.out(u"a.pdf"_s);
    if (way == "symbolic link"_L1)
        QVERIFY(QFile::link(input, output));
    if (way == "hard link"_L1)
        QCOMPARE(link(qPrintable(input), qPrintable(output)), 0);
    const Run run = bench.run(Bench::line(input, output));
    QCOMPARE(run.status, nameTaken);
    QCOMPARE(contentOf(input), content);
    QCOMPARE(contentOf(output), content);
}

// The placeholder must not be taken for the document.
void TestUntouched::missingInputIsOutput()
{
    Bench bench;
    const Run run = bench.run(Bench::line(bench.out(u"a.pdf"_s), bench.out(u"a.pdf"_s)));
    QCOMPARE(run.status, 1);
    QVERIFY(run.errors.contains("No such file or directory"));
    QCOMPARE(namesIn(bench.out()), QStringList());
}

// What the window's quotes make of a name with quotes in it.
void TestUntouched::bentLine_data()
{
    QTest::addColumn<QString>("name");
    for (const QString &name :
         {u"a\".pdf"_s, u"\"a\".pdf"_s, u"a\" \"b.pdf"_s, u"a\" -dNOSAFER \"b.pdf"_s,
          u"a\" -sOutputFile=victim.pdf -f \"b.pdf"_s, u"a\" -f victim.pdf \"b.pdf"_s,
          u"a\" @victim.pdf \"b.pdf"_s, u"a\" -c quit -f \"b.pdf"_s, u"victim\".pdf"_s,
          u"\"victim\".pdf"_s})
        QTest::newRow(qPrintable(name)) << name;
}

void TestUntouched::bentLine()
{
    QFETCH(QString, name);
    Bench bench;
    const QByteArray victim = samplePdf(3);
    write(bench.in(name), samplePdf());
    write(bench.in(u"victim.pdf"_s), victim);
    write(bench.out(u"victim.pdf"_s), victim);
    const QStringList switches = Bench::line({}, {}).mid(0, Bench::line({}, {}).size() - 3);
    const QString line = u'"' + Bench::corvgs() + "\" "_L1 + switches.join(u' ') +
                         " -sOutputFile=\""_L1 + bench.out(name) + "\" -f \""_L1 + bench.in(name) +
                         u'"';
    QStringList words = QProcess::splitCommand(line);
    const QString program = words.takeFirst();
    const Run run = bench.run(words, program, bench.out());
    QVERIFY(run.status != 0);
    QCOMPARE(run.errors.count('\n'), 1);
    QCOMPARE(namesIn(bench.out()), QStringList{u"victim.pdf"_s});
    QCOMPARE(contentOf(bench.out(u"victim.pdf"_s)), victim);
    QCOMPARE(contentOf(bench.in(u"victim.pdf"_s)), victim);
    QCOMPARE(namesIn(bench.in()).size(), 2);
}

void TestUntouched::placeholderIsThereFromTheStart()
{
    Bench bench(samplePdf());
    bench.setStandin(u"wait"_s);
    const QStringList line = lineOf(bench);
    const auto process = bench.start(line, Bench::driver(Bench::Confined));
    QVERIFY(process->waitForReadyRead());
    QCOMPARE(namesIn(bench.out()), QStringList{u"a.pdf"_s});
    QCOMPARE(QFileInfo(bench.out(u"a.pdf"_s)).size(), 0);

    const Run second = bench.run(line, Bench::driver(Bench::Confined));
    QCOMPARE(second.status, nameTaken);
    QVERIFY(second.errors.contains("is taken"));
    process->terminate();
    QVERIFY(process->waitForFinished());
    QCOMPARE(namesIn(bench.out()), QStringList());
}

void TestUntouched::placeholderThatSomebodyFilled()
{
    Bench bench(samplePdf());
    bench.setStandin(u"wait"_s);
    const auto process = bench.start(lineOf(bench), Bench::driver(Bench::Confined));
    QVERIFY(process->waitForReadyRead());
    write(bench.out(u"a.pdf"_s), "somebody else's");
    process->terminate();
    QVERIFY(process->waitForFinished());
    QCOMPARE(contentOf(bench.out(u"a.pdf"_s)), QByteArray("somebody else's"));
}

void TestUntouched::neighbours()
{
    Bench bench(samplePdf());
    const QStringList names = {u".corvgs-1-0"_s, u"a.pdf.tmp"_s, u"a0.pdf"_s, u"b.pdf"_s};
    for (const QString &name : names)
        write(bench.out(name), "mine");
    const Run run = bench.run(lineOf(bench));
    QCOMPARE(run.status, 0);
    for (const QString &name : names)
        QCOMPARE(contentOf(bench.out(name)), QByteArray("mine"));
    QCOMPARE(namesIn(bench.out()).size(), 5);
}

QTEST_GUILESS_MAIN(TestUntouched)
#include "tst_engine_untouched.moc"
