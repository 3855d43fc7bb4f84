// Names are names, whatever Ghostscript would read into them.
#include "bench.h"
#include "samples.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestNames : public QObject
{
    Q_OBJECT

private slots:
    void absolute_data() { names(); }
    void absolute();
    void relative_data() { names(); }
    void relative();
    void folders_data();
    void folders();
    void notUtf8();
    void marks();

private:
    static void names();
};

void TestNames::names()
{
    QTest::addColumn<QString>("name");
    const QStringList names = {u"50% off.pdf"_s, u"%d.pdf"_s,    u"%%"_s,           u"100%"_s,
                               u"%stdout"_s,     u"%stdin"_s,    u"%pipe%ls"_s,     u"|touch x"_s,
                               u"-"_s,           u"-dNOSAFER"_s, u"-f"_s,           u"@list"_s,
                               u"a b.pdf"_s,     u"(a)\\b"_s,    u"a\nb\r.pdf"_s,   u"a\"b\".pdf"_s,
                               u"'$HOME'`;&"_s,  u" "_s,         u"Zoë 報告.pdf"_s, u"...pdf"_s,
                               u"_"_s,           u"~"_s,         u"*?[x]"_s,        u"\x1b[31m"_s,
                               u"a=b#c"_s};
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
    QTest::newRow("250 bytes") << QString(246, u'x') + ".pdf"_L1;
    QTest::newRow("250 bytes of per cent signs") << QString(250, u'%');
}

void TestNames::absolute()
{
    QFETCH(QString, name);
    Bench bench;
    write(bench.in(name), samplePdf(2));
    const Run run = bench.run(Bench::line(bench.in(name), bench.out(name)));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.output,
             QByteArray("corvgs: the copy is the original: nothing makes it smaller\n"));
    QCOMPARE(run.status, 0);
    QCOMPARE(namesIn(bench.out()), QStringList{name});
    QCOMPARE(namesIn(bench.in()), QStringList{name});
    QCOMPARE(tools::pages(bench.out(name)), 2);
}

void TestNames::relative()
{
    QFETCH(QString, name);
    Bench bench;
    write(bench.in(name), samplePdf(2));
    QVERIFY(QDir(bench.out()).mkdir(u"%d"_s));
    const Run run =
        bench.run(Bench::line(name, "../out/%d/"_L1 + name), Bench::corvgs(), bench.in());
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(namesIn(bench.out(u"%d"_s)), QStringList{name});

    const Run second =
        bench.run(Bench::line("../in/"_L1 + name, name), Bench::corvgs(), bench.out());
    QCOMPARE(second.status, 0);
    QCOMPARE(tools::pages(bench.out(name)), 2);
    QCOMPARE(namesIn(bench.out()).size(), 2);
}

void TestNames::folders_data()
{
    QTest::addColumn<QString>("folder");
    for (const QString &folder : {u"%d"_s, u"%stdout"_s, u"50%\n"_s, u"|x"_s, u"-f"_s, u"@"_s})
        QTest::newRow(qPrintable(folder)) << folder;
}

void TestNames::folders()
{
    QFETCH(QString, folder);
    Bench bench;
    for (const QString &path : {bench.in(folder), bench.out(folder), bench.out(u"t"_s + folder)})
        QVERIFY(QDir().mkdir(path));
    bench.environment.insert(u"TMPDIR"_s, bench.out(u"t"_s + folder));
    const QString input = bench.in(folder + "/a.pdf"_L1);
    const QString output = bench.out(folder + "/a.pdf"_L1);
    write(input, samplePdf());
    const Run run = bench.run(Bench::line(input, output));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(tools::pages(output), 1);
    QCOMPARE(namesIn(bench.out(folder)), QStringList{u"a.pdf"_s});
    QCOMPARE(namesIn(bench.out(u"t"_s + folder)), QStringList());
}

// Qt can't name such files, a shell can.
void TestNames::notUtf8()
{
    Bench bench(samplePdf());
    const Run run = bench.run(
        QStringList{u"-c"_s,
                    u"n=$(printf 'Zo\\353.pdf'); i=$1; o=$2; c=$3; shift 3; cp \"$i/a.pdf\" "
                    "\"$i/$n\"; \"$c\" \"$@\" \"-sOutputFile=$o/$n\" -f \"$i/$n\"; s=$?; "
                    "mv \"$o/$n\" \"$o/found.pdf\"; exit $s"_s,
                    u"sh"_s, bench.in(), bench.out(), Bench::corvgs()} +
            Bench::line({}, {}).mid(0, Bench::line({}, {}).size() - 3),
        u"/bin/sh"_s);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(namesIn(bench.out()), QStringList{u"found.pdf"_s});
}

void TestNames::marks()
{
    Bench bench(samplePdf());
    const QString folder = bench.in(u"%d\n(|@ -c"_s);
    QVERIFY(QDir().mkdir(folder));
    write(folder + "/pdfinfo.txt"_L1, "[ /Title (x) /DOCINFO pdfmark");
    const Run run = bench.run(lineOf(bench, {}, folder + "/pdfinfo.txt"_L1));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
}

QTEST_GUILESS_MAIN(TestNames)
#include "tst_engine_names.moc"
