// What an engine that has been taken over can reach. Each attempt is made twice, because one that
// fails without confinement too proves nothing.
#include "bench.h"
#include "samples.h"
#include "support/machine.h"

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
    void calls_data();
    void calls();
    void allowedCalls_data();
    void allowedCalls();
    void reachable_data();
    void reachable();
    void postScript_data();
    void postScript();
    void postScriptAsDocument();
    void environmentAddsNoSwitches();
    void nothingIsInherited();
    void wrapper();
    void wrapperIsConfined_data();
    void wrapperIsConfined();

private:
    static void prepare(const Bench &bench);
    static QString filled(QString text, const Bench &bench);
    static QStringList pdfaLine(const Bench &bench);
};

void TestBreakout::prepare(const Bench &bench)
{
    write(bench.in(u"a.pdf"_s), samplePdf());
    write(bench.in(u"other.pdf"_s), "treasure");
    write(bench.home(u"secret"_s), "treasure");
    write(bench.out(u"mine"_s), "treasure");
}

// The braces keep the places apart from the random letters of a temporary folder's name.
QString TestBreakout::filled(QString text, const Bench &bench)
{
    const std::pair<QLatin1StringView, QString> places[] = {
        {"{home}/"_L1, bench.home()},
        {"{home}"_L1, bench.home()},
        {"{out}/"_L1, bench.out()},
        {"{out}"_L1, bench.out()},
        {"{in}/"_L1, bench.in()},
        {"{in}"_L1, bench.in()},
        {"{tmp}"_L1, bench.temporary()},
        {"{parent}"_L1, QString::number(QCoreApplication::applicationPid())},
    };
    for (const auto &[place, path] : places)
        text.replace(place, path);
    return text;
}

// For PDF/A the whole document goes to Ghostscript, whatever is in it.
QStringList TestBreakout::pdfaLine(const Bench &bench)
{
    return lineOf(bench, {u"-dPDFA"_s});
}

// Everything below is only as good as what this line says. Where the kernel has no Landlock, the
// tests that need it are skipped, and say so, instead of passing without having tested anything.
void TestBreakout::kernelIsUpToIt()
{
    SKIP_IF(machine::whyNoLandlock());
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
    for (const QString &wish : {u"read:{home}/secret"_s,
                                u"list:{home}"_s,
                                u"write:{home}/new"_s,
                                u"append:{home}/secret"_s,
                                u"truncate:{home}/secret"_s,
                                u"remove:{home}/secret"_s,
                                u"chmod:{home}/secret"_s,
                                u"link:{home}/secret"_s,
                                u"read:{out}/mine"_s,
                                u"list:{out}"_s,
                                u"write:{out}/new"_s,
                                u"append:{out}/mine"_s,
                                u"remove:{out}/mine"_s,
                                u"remove:{out}/a.pdf"_s,
                                u"mkdir:{out}/new"_s,
                                u"read:{in}/other.pdf"_s,
                                u"append:{in}/a.pdf"_s,
                                u"remove:{in}/a.pdf"_s,
                                u"chmod:{in}/a.pdf"_s,
                                u"list:{in}"_s,
                                u"list:{tmp}"_s,
                                u"write:{tmp}/new"_s,
                                u"read:/etc/passwd"_s,
                                u"list:/"_s,
                                u"list:/etc"_s,
                                u"read:/proc/1/status"_s,
                                u"start-shell"_s,
                                u"become-shell"_s,
                                u"fork"_s,
                                u"socket"_s,
                                u"local-socket"_s,
                                u"kill:{parent}"_s})
        QTest::newRow(qPrintable(wish)) << wish;
}

void TestBreakout::standin()
{
    SKIP_IF(machine::whyNoLandlock());
    QFETCH(QString, wish);
    for (const auto confinement : {Bench::Unconfined, Bench::Confined}) {
        Bench bench;
        prepare(bench);
        const Run run = bench.runStandin(filled(wish, bench), confinement);
        QCOMPARE(run.status, confinement == Bench::Confined ? 20 : 10);
        if (confinement == Bench::Unconfined)
            continue;
        QCOMPARE(contentOf(bench.home(u"secret"_s)), QByteArray("treasure"));
        QCOMPARE(contentOf(bench.out(u"mine"_s)), QByteArray("treasure"));
        QCOMPARE(contentOf(bench.in(u"a.pdf"_s)), samplePdf());
        QCOMPARE(namesIn(bench.home()), QStringList{u"secret"_s});
        QCOMPARE(namesIn(bench.out()), QStringList{u"mine"_s});
    }
}

void TestBreakout::calls_data()
{
    QTest::addColumn<QString>("wish");
    for (const QString &wish : {u"start-shell"_s,
                                u"become-shell"_s,
                                u"fork"_s,
                                u"socket"_s,
                                u"local-socket"_s,
                                u"chmod:{home}/secret"_s,
                                u"truncate:{home}/secret"_s,
                                u"link:{home}/secret"_s,
                                u"kill:{parent}"_s,
                                u"tkill:{parent}"_s,
                                u"tgkill:{parent}"_s,
                                u"queue-signal:{parent}"_s,
                                u"pidfd:{parent}"_s,
                                u"file-signals:{parent}"_s,
                                u"off-the-leash"_s,
                                u"subreaper"_s,
                                u"dumpable"_s,
                                u"limits:{parent}"_s,
                                u"priority:{parent}"_s,
                                u"disk-priority:{parent}"_s,
                                u"processors:{parent}"_s,
                                u"scheduler:{parent}"_s,
                                u"process-memory"_s,
                                u"trace"_s,
                                u"compare"_s,
                                u"performance-events"_s,
                                u"bpf"_s,
                                u"userfaultfd"_s,
                                u"io-uring"_s,
                                u"keys"_s,
                                u"memory-file"_s,
                                u"inotify"_s,
                                u"fanotify"_s,
                                u"own-limits"_s,
                                u"own-limits-by-number"_s,
                                u"other-program"_s,
                                u"call-fchmod"_s,
                                u"call-fchmodat"_s,
                                u"call-chown"_s,
                                u"call-fchown"_s,
                                u"call-lchown"_s,
                                u"call-fchownat"_s,
                                u"call-utimensat"_s,
                                u"call-setxattr"_s,
                                u"call-lsetxattr"_s,
                                u"call-fsetxattr"_s,
                                u"call-removexattr"_s,
                                u"call-lremovexattr"_s,
                                u"call-fremovexattr"_s,
                                u"call-symlink"_s,
                                u"call-symlinkat"_s,
                                u"call-linkat"_s,
                                u"call-mknodat"_s})
        QTest::newRow(qPrintable(wish)) << wish;
}

// The system call filter has to do alone where the kernel is older than Landlock.
void TestBreakout::calls()
{
    QFETCH(QString, wish);
    Bench bench;
    prepare(bench);
    bench.setStandin(filled(wish, bench));
    const QStringList line = lineOf(bench);
    const Run confined = bench.runWithout(Bench::landlock, line);
    QCOMPARE(confined.status, 20);
    const Run unconfined = bench.run(line, Bench::driver(Bench::Unconfined));
    if (unconfined.status == 20)
        QSKIP("this system denies it to everybody or to this user");
    QCOMPARE(unconfined.status, 10);
}

void TestBreakout::allowedCalls_data()
{
    QTest::addColumn<QString>("wish");
    QTest::newRow("a signal to itself") << u"own-tgkill"_s;
    QTest::newRow("a name for its thread") << u"own-name"_s;
}

void TestBreakout::allowedCalls()
{
    QFETCH(QString, wish);
    Bench bench;
    prepare(bench);
    QCOMPARE(bench.runStandin(wish, Bench::Confined).status, 10);
}

void TestBreakout::reachable_data()
{
    QTest::addColumn<QString>("wish");
    for (const QString &wish : {u"read:/dev/fd/4"_s, u"write:/dev/fd/3"_s, u"read:/dev/urandom"_s,
                                u"list:/usr/share/fonts"_s, u"read:/etc/fonts/fonts.conf"_s,
                                u"read:{home}/.fonts/mine.ttf"_s, u"list:{home}/.fonts"_s})
        QTest::newRow(qPrintable(wish)) << wish;
}

void TestBreakout::reachable()
{
    QFETCH(QString, wish);
    Bench bench;
    prepare(bench);
    QVERIFY(QDir().mkdir(bench.home(u".fonts"_s)));
    write(bench.home(u".fonts/mine.ttf"_s), "font");
    bench.setStandin(filled(wish, bench));
    QCOMPARE(bench.run(pdfaLine(bench), Bench::driver(Bench::Confined)).status, 10);
}

void TestBreakout::postScript_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("made"); // the file that shows that it worked
    const QString say = u" (w) file dup (treasure) writestring closefile"_s;
    QTest::newRow("read a file of the home folder")
        << u"({home}/secret) (r) file 9 string readstring pop print flush"_s << QString();
    QTest::newRow("read another document")
        << u"({in}/other.pdf) (r) file 9 string readstring pop print flush"_s << QString();
    QTest::newRow("write beside the output") << "({out}/new)"_L1 + say << u"{out}/new"_s;
    QTest::newRow("write into the home folder") << "({home}/new)"_L1 + say << u"{home}/new"_s;
    QTest::newRow("list a folder")
        << u"({home}/*) { (treasure) print print flush } 999 string filenameforall"_s << QString();
    QTest::newRow("start a shell")
        << u"(%pipe%echo treasure; echo treasure >{out}/new) (r) file 9 string readstring pop print flush"_s
        << u"{out}/new"_s;
    QTest::newRow("remove a file")
        << u"({out}/mine) deletefile (treasure) print flush"_s << QString();
}

void TestBreakout::postScript()
{
    QFETCH(QString, program);
    QFETCH(QString, made);
    for (const auto confinement : {Bench::Unconfined, Bench::Confined}) {
        Bench bench;
        prepare(bench);
        write(bench.mark(), filled(program, bench).toUtf8());
        bench.environment.insert(u"DRIVER_NO_SAFER"_s, u"1"_s);
        const Run run = bench.run(lineOf(bench, {}, bench.mark()), Bench::driver(confinement));
        const bool worked = made.isEmpty() ? run.output.contains("treasure")
                                           : contentOf(filled(made, bench)).contains("treasure");
        QCOMPARE(worked, confinement == Bench::Unconfined);
        QVERIFY(confinement == Bench::Unconfined ||
                contentOf(bench.out(u"mine"_s)) == QByteArray("treasure"));
    }
}

// What is no document doesn't come to Ghostscript at all.
void TestBreakout::postScriptAsDocument()
{
    Bench bench;
    prepare(bench);
    write(bench.in(u"a.pdf"_s), "(" + bench.home(u"secret"_s).toUtf8() +
                                    ") (r) file 9 string readstring pop print flush showpage");
    bench.environment.insert(u"DRIVER_NO_SAFER"_s, u"1"_s);
    const QStringList line = lineOf(bench, {u"-dPDFA"_s});
    QStringList open = line;
    open.replaceInStrings(u"-dSAFER"_s, u"-dNOSAFER"_s);
    QVERIFY(bench.run(open, Bench::ghostscript()).output.contains("treasure"));
    QFile::remove(bench.out(u"a.pdf"_s));
    for (const QString &program : {Bench::driver(Bench::Unconfined), Bench::corvgs()}) {
        const Run run = bench.run(line, program);
        QVERIFY(run.status > 0);
        QVERIFY2(run.errors.contains("unable to find trailer"), run.errors);
        QVERIFY(!run.output.contains("treasure"));
    }
}

void TestBreakout::environmentAddsNoSwitches()
{
    Bench bench;
    prepare(bench);
    bench.environment.insert(u"GS_OPTIONS"_s,
                             "-dNOSAFER -sOutputFile="_L1 + bench.out(u"new.pdf"_s));
    const Run run = bench.run(lineOf(bench));
    QCOMPARE(run.status, 0);
    QCOMPARE(namesIn(bench.out()), (QStringList{u"a.pdf"_s, u"mine"_s}));
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
                          pdfaLine(bench),
                      u"/bin/sh"_s);
        QCOMPARE(run.output, QByteArray("0 1 2 3 4 7 "));
    }
}

// Many have a script in Ghostscript's place.
void TestBreakout::wrapper()
{
    for (const auto confinement : {Bench::Unconfined, Bench::Confined}) {
        Bench bench;
        prepare(bench);
        const QString script = bench.home(u"gs"_s);
        writeProgram(script,
                     "#! /bin/sh -e\nname=$(basename \"$0\"); echo \"$name\" | tr g G\nexec '" +
                         Bench::ghostscript().toUtf8() + "' \"$@\"\n");
        bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, script);
        const Run run =
            bench.run(lineOf(bench, {u"-sUserPassword=sesame"_s}), Bench::driver(confinement));
        QCOMPARE(run.errors, QByteArray());
        QVERIFY2(run.output.startsWith("Gs\n"), run.output);
        QCOMPARE(run.status, 0);
        QCOMPARE(tools::pages(bench.out(u"a.pdf"_s), u"sesame"_s), 1);
    }
}

void TestBreakout::wrapperIsConfined_data()
{
    QTest::addColumn<QString>("command"); // succeeds or not
    QTest::newRow("read") << u"cat {home}/secret"_s;
    QTest::newRow("list") << u"ls {home}"_s;
    QTest::newRow("write") << u"echo >{out}/new"_s;
    QTest::newRow("other document") << u"cat {in}/other.pdf"_s;
    QTest::newRow("start what a user installed") << u"{home}/program"_s;
    QTest::newRow("signal") << u"kill -0 {parent}"_s;
}

void TestBreakout::wrapperIsConfined()
{
    QFETCH(QString, command);
    for (const auto confinement : {Bench::Unconfined, Bench::Confined}) {
        Bench bench;
        prepare(bench);
        const QString script = bench.home(u"gs"_s);
        const QString program = bench.home(u"program"_s);
        writeProgram(script, "#!/bin/sh\nif " + filled(command, bench).toUtf8() +
                                 "\nthen exit 10\nfi\nexit 20\n");
        writeProgram(program, "#!/bin/sh\n");
        bench.environment.insert(u"DRIVER_GHOSTSCRIPT"_s, script);
        const Run run = bench.run(lineOf(bench), Bench::driver(confinement));
        QCOMPARE(run.status, confinement == Bench::Confined ? 20 : 10);
    }
}

QTEST_GUILESS_MAIN(TestBreakout)
#include "tst_engine_breakout.moc"
