// What an engine that has been taken over can reach. Each attempt is made twice, because one that
// fails without confinement too proves nothing.
#include "bench.h"
#include "samples.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

class TestBreakout : public QObject
{
    Q_OBJECT

private slots:
    void kernelIsUpToIt();
    void standin_data();
    void standin();
    void reachable_data();
    void reachable();
    void postScript_data();
    void postScript();
    void postScriptAsDocument();
    void environmentAddsNoSwitches();
    void nothingIsInherited();

private:
    static void prepare(const Bench &bench);
};

void TestBreakout::prepare(const Bench &bench)
{
    write(bench.in(u"a.pdf"_s), samplePdf());
    write(bench.in(u"other.pdf"_s), "treasure");
    write(bench.home(u"secret"_s), "treasure");
    write(bench.out(u"mine"_s), "treasure");
}

// Everything below is only as good as what this line says. A kernel without Landlock fails here,
// and says so, instead of passing tests that did not test.
void TestBreakout::kernelIsUpToIt()
{
    const Run run = Bench().run({u"--confinement"_s});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output.count('\n'), 1);
    QVERIFY2(run.output.contains("file rules (Landlock "), run.output);
    QVERIFY2(run.output.contains("no network and no other programs (seccomp)"), run.output);
    QVERIFY2(run.output.contains("no new privileges, no core dumps"), run.output);
    const Run driver = Bench().run({u"--confinement"_s}, Bench::driver(Bench::Unconfined));
    QCOMPARE(driver.output, QByteArray("no confinement on this system\n"));
}

void TestBreakout::standin_data()
{
    QTest::addColumn<QString>("wish");
    for (const QString &wish : {u"read:HOME/secret"_s,
                                u"list:HOME"_s,
                                u"write:HOME/new"_s,
                                u"append:HOME/secret"_s,
                                u"truncate:HOME/secret"_s,
                                u"remove:HOME/secret"_s,
                                u"chmod:HOME/secret"_s,
                                u"link:HOME/secret"_s,
                                u"read:OUT/mine"_s,
                                u"list:OUT"_s,
                                u"write:OUT/new"_s,
                                u"append:OUT/mine"_s,
                                u"remove:OUT/mine"_s,
                                u"remove:OUT/a.pdf"_s,
                                u"mkdir:OUT/new"_s,
                                u"read:IN/other.pdf"_s,
                                u"append:IN/a.pdf"_s,
                                u"remove:IN/a.pdf"_s,
                                u"chmod:IN/a.pdf"_s,
                                u"list:IN"_s,
                                u"list:TMP"_s,
                                u"write:TMP/new"_s,
                                u"read:/etc/passwd"_s,
                                u"list:/"_s,
                                u"list:/etc"_s,
                                u"read:/proc/1/status"_s,
                                u"start-shell"_s,
                                u"become-shell"_s,
                                u"fork"_s,
                                u"socket"_s,
                                u"local-socket"_s,
                                u"kill:PARENT"_s})
        QTest::newRow(qPrintable(wish)) << wish;
}

void TestBreakout::standin()
{
    QFETCH(QString, wish);
    for (const auto confinement : {Bench::Unconfined, Bench::Confined}) {
        Bench bench;
        prepare(bench);
        QString filled = wish;
        filled.replace("HOME"_L1, bench.home()).replace("OUT"_L1, bench.out());
        filled.replace("IN/"_L1, bench.in()).replace("IN"_L1, bench.in());
        filled.replace("TMP"_L1, bench.temporary());
        filled.replace("PARENT"_L1, QString::number(QCoreApplication::applicationPid()));
        const Run run = bench.runStandin(filled, confinement);
        QCOMPARE(run.status, confinement == Bench::Confined ? 20 : 10);
        if (confinement == Bench::Unconfined)
            continue;
        QCOMPARE(contentOf(bench.home(u"secret"_s)), QByteArray("treasure"));
        QCOMPARE(contentOf(bench.out(u"mine"_s)), QByteArray("treasure"));
        QCOMPARE(contentOf(bench.in(u"a.pdf"_s)), samplePdf());
        QCOMPARE(Bench::namesIn(bench.home()), QStringList{u"secret"_s});
        QCOMPARE(Bench::namesIn(bench.out()), QStringList{u"mine"_s});
    }
}

void TestBreakout::reachable_data()
{
    QTest::addColumn<QString>("wish");
    for (const QString &wish : {u"read:/dev/fd/4"_s, u"write:/dev/fd/3"_s, u"read:/dev/urandom"_s,
                                u"list:/usr/share/fonts"_s, u"read:/etc/fonts/fonts.conf"_s,
                                u"read:HOME/.fonts/mine.ttf"_s, u"list:HOME/.fonts"_s})
        QTest::newRow(qPrintable(wish)) << wish;
}

void TestBreakout::reachable()
{
    QFETCH(QString, wish);
    Bench bench;
    prepare(bench);
    QVERIFY(QDir().mkdir(bench.home(u".fonts"_s)));
    write(bench.home(u".fonts/mine.ttf"_s), "font");
    wish.replace("HOME"_L1, bench.home());
    QCOMPARE(bench.runStandin(wish, Bench::Confined).status, 10);
}

void TestBreakout::postScript_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("made"); // the file that shows that it worked
    const QString say = u" (w) file dup (treasure) writestring closefile"_s;
    QTest::newRow("read a file of the home folder")
        << u"(HOME/secret) (r) file 9 string readstring pop print flush"_s << QString();
    QTest::newRow("read another document")
        << u"(IN/other.pdf) (r) file 9 string readstring pop print flush"_s << QString();
    QTest::newRow("write beside the output") << "(OUT/new)"_L1 + say << u"OUT/new"_s;
    QTest::newRow("write into the home folder") << "(HOME/new)"_L1 + say << u"HOME/new"_s;
    QTest::newRow("list a folder")
        << u"(HOME/*) { (treasure) print print flush } 999 string filenameforall"_s << QString();
    QTest::newRow("start a shell")
        << u"(%pipe%echo treasure; echo treasure >OUT/new) (r) file 9 string readstring pop print flush"_s
        << u"OUT/new"_s;
    QTest::newRow("remove a file")
        << u"(OUT/mine) deletefile (treasure) print flush"_s << QString();
}

void TestBreakout::postScript()
{
    QFETCH(QString, program);
    QFETCH(QString, made);
    for (const auto confinement : {Bench::Unconfined, Bench::Confined}) {
        Bench bench;
        prepare(bench);
        const auto filled = [&bench](QString text) {
            text.replace("HOME/"_L1, bench.home()).replace("OUT/"_L1, bench.out());
            return text.replace("IN/"_L1, bench.in());
        };
        write(bench.mark(), filled(program).toUtf8());
        bench.environment.insert(u"DRIVER_NO_SAFER"_s, u"1"_s);
        const Run run =
            bench.run(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"a.pdf"_s), {}, bench.mark()),
                      Bench::driver(confinement));
        const bool worked = made.isEmpty() ? run.output.contains("treasure")
                                           : contentOf(filled(made)).contains("treasure");
        QCOMPARE(worked, confinement == Bench::Unconfined);
        QVERIFY(confinement == Bench::Unconfined ||
                contentOf(bench.out(u"mine"_s)) == QByteArray("treasure"));
    }
}

void TestBreakout::postScriptAsDocument()
{
    Bench bench;
    prepare(bench);
    write(bench.in(u"a.pdf"_s), "(" + bench.home(u"secret"_s).toUtf8() +
                                    ") (r) file 9 string readstring pop print flush showpage");
    bench.environment.insert(u"DRIVER_NO_SAFER"_s, u"1"_s);
    const QStringList line = Bench::line(bench.in(u"a.pdf"_s), bench.out(u"a.pdf"_s));
    QVERIFY(bench.run(line, Bench::driver(Bench::Unconfined)).output.contains("treasure"));
    QFile::remove(bench.out(u"a.pdf"_s));
    const Run run = bench.run(line, Bench::driver(Bench::Confined));
    QVERIFY(run.status > 0);
    QVERIFY(!run.output.contains("treasure"));
}

void TestBreakout::environmentAddsNoSwitches()
{
    Bench bench;
    prepare(bench);
    bench.environment.insert(u"GS_OPTIONS"_s,
                             "-dNOSAFER -sOutputFile="_L1 + bench.out(u"new.pdf"_s));
    const Run run = bench.run(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"a.pdf"_s)));
    QCOMPARE(run.status, 0);
    QCOMPARE(Bench::namesIn(bench.out()), (QStringList{u"a.pdf"_s, u"mine"_s}));
}

// What corvgs itself was given open, under the numbers of channels too.
void TestBreakout::nothingIsInherited()
{
    for (const auto confinement : {Bench::Unconfined, Bench::Confined}) {
        Bench bench;
        prepare(bench);
        bench.setStandin(u"descriptors"_s);
        const Run run =
            bench.run(QStringList{u"-c"_s,
                                  u"exec 5<\"$HOME/secret\" 6<\"$HOME/secret\" 9<\"$HOME/secret\"; "
                                  "exec \"$0\" \"$@\""_s,
                                  Bench::driver(confinement)} +
                          Bench::line(bench.in(u"a.pdf"_s), bench.out(u"a.pdf"_s)),
                      u"/bin/sh"_s);
        QCOMPARE(run.output, QByteArray("0 1 2 3 4 7 "));
    }
}

QTEST_GUILESS_MAIN(TestBreakout)
#include "tst_engine_breakout.moc"
