// What becomes a copy, and what doesn't.
#include "bench.h"
#include "samples.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QByteArray lockedPdf()
{
    Bench bench(samplePdf());
    tools::outputOf(u"qpdf"_s, {u"--encrypt"_s, u"user"_s, u"owner"_s, u"128"_s, u"--use-aes=y"_s,
                                u"--"_s, bench.in(u"a.pdf"_s), bench.out(u"a.pdf"_s)});
    return contentOf(bench.out(u"a.pdf"_s));
}

QByteArray ownerLockedPdf()
{
    Bench bench(samplePdf(2));
    tools::outputOf(u"qpdf"_s, {u"--encrypt"_s, u""_s, u"owner"_s, u"256"_s, u"--"_s,
                                bench.in(u"a.pdf"_s), bench.out(u"a.pdf"_s)});
    return contentOf(bench.out(u"a.pdf"_s));
}

// A public-key security handler: only the owner of a certificate can open it.
QByteArray certificatePdf()
{
    QByteArray file = samplePdf();
    return file.replace("trailer <<", "trailer << /Encrypt << /Filter /Adobe.PubSec /SubFilter "
                                      "/adbe.pkcs7.s4 /V 2 /Length 128 /Recipients [(x)] >> "
                                      "/ID [(1234567890123456) (1234567890123456)]");
}

// The page tree claims and has two pages; the second one is no page that can be written.
QByteArray brokenSecondPage()
{
    return pdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                  "<< /Type /Pages /Count 2 /Kids [3 0 R 4 0 R] >>",
                  "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] >>",
                  "<< /Type /Pages /Parent 2 0 R /Count 1 /Kids [4 0 R] >>"});
}

QByteArray emptyPagePdf()
{
    return pdfOf({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
                  "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] >>"});
}

// libqpdf and Ghostscript differ over what to make of it, and other viewers show nothing.
QByteArray uncountedPages()
{
    return samplePdf(2).replace("/Count", "/Tally");
}

} // namespace

class TestCopies : public QObject
{
    Q_OBJECT

private slots:
    void copied_data();
    void copied();
    void noStub_data();
    void noStub();
    void noStubOfAFifo();
    void markIsWritten();
    void brokenMarkFails();
    void tooLongMarkFails();
    void passThrough();
    void passThroughTakesAnyOutput();
    void ghostscriptsStatus();
    void nothingToRead();
    void fromADeepFolder();
    void permissionsOfTheFile();
};

void TestCopies::copied_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<int>("pages");
    QTest::newRow("one page") << samplePdf() << 1;
    QTest::newRow("many pages") << samplePdf(120) << 120;
    QTest::newRow("large image") << samplePdf(1, 700) << 1;
    QTest::newRow("a blank page") << emptyPagePdf() << 1;
    QTest::newRow("empty user password") << ownerLockedPdf() << 2;
    QTest::newRow("damaged end") << samplePdf(3).chopped(12) << 3;
}

void TestCopies::copied()
{
    QFETCH(QByteArray, original);
    QFETCH(int, pages);
    Bench bench(original);
    const Run run = bench.run(lineOf(bench));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), pages);
    QCOMPARE(namesIn(bench.out()), QStringList{u"a.pdf"_s});
    QCOMPARE(namesIn(bench.temporary()), QStringList());
    QCOMPARE(contentOf(bench.in(u"a.pdf"_s)), original);
}

void TestCopies::noStub_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<bool>("stubOfGhostscript"); // the bare engine leaves a file
    QTest::newRow("without a trailer") << samplePdf(3).chopped(40) << true;
    QTest::newRow("truncated") << samplePdf(20).left(150) << true;
    QTest::newRow("empty") << QByteArray() << true;
    QTest::newRow("locked") << lockedPdf() << true;
    QTest::newRow("certificate") << certificatePdf() << true;
    QTest::newRow("plain text") << QByteArray("Dear Sir or Madam\n") << true;
    QTest::newRow("noise") << samplePdf(1, 64).mid(500, 3000) << true;
    QTest::newRow("a page too few") << brokenSecondPage() << true;
    QTest::newRow("pages without a count") << uncountedPages() << true;
}

void TestCopies::noStub()
{
    QFETCH(QByteArray, original);
    QFETCH(bool, stubOfGhostscript);
    Bench bench(original);
    const QStringList line = lineOf(bench);
    (void)bench.run(line, Bench::ghostscript());
    QCOMPARE(QFileInfo::exists(bench.out(u"a.pdf"_s)), stubOfGhostscript);
    QFile::remove(bench.out(u"a.pdf"_s));

    const Run run = bench.run(line);
    QVERIFY(run.status > 0);
    QCOMPARE(run.errors.count("corvgs: "), 1);
    QVERIFY(run.errors.endsWith('\n'));
    QCOMPARE(namesIn(bench.out()), QStringList());
    QCOMPARE(namesIn(bench.temporary()), QStringList());
}

void TestCopies::noStubOfAFifo()
{
    Bench bench;
    tools::outputOf(u"mkfifo"_s, {bench.in(u"a.pdf"_s)});
    const Run run = bench.run(lineOf(bench));
    QCOMPARE(run.status, 1);
    QVERIFY(run.errors.contains("not a file"));
    QCOMPARE(namesIn(bench.out()), QStringList());
}

void TestCopies::markIsWritten()
{
    Bench bench(samplePdf());
    write(bench.mark(), "[ /Title (Accounts)\n /Author (Zoe) \n /DOCINFO pdfmark");
    const Run run = bench.run(lineOf(bench, {}, bench.mark()));
    QCOMPARE(run.status, 0);
    const QByteArray text = tools::outputOf(u"pdfinfo"_s, {bench.out(u"a.pdf"_s)});
    QVERIFY(text.contains("Accounts"));
    QVERIFY(text.contains("Zoe"));
}

void TestCopies::brokenMarkFails()
{
    Bench bench(samplePdf());
    write(bench.mark(), "[ /Title (Acc(ounts)\n /DOCINFO pdfmark");
    const Run run = bench.run(lineOf(bench, {}, bench.mark()));
    QVERIFY(run.status > 0);
    QCOMPARE(namesIn(bench.out()), QStringList());
}

// Only a mistake can have put such a file in the mark's place.
void TestCopies::tooLongMarkFails()
{
    Bench bench;
    write(bench.in(u"a.pdf"_s), samplePdf());
    write(bench.mark(), "[ /Title (Accounts) /DOCINFO pdfmark " + QByteArray(1 << 20, ' '));
    const Run run =
        bench.run(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"a.pdf"_s), {}, bench.mark()));
    QCOMPARE(run.status, 1);
    QCOMPARE(run.errors,
             "corvgs: " + bench.mark().toUtf8() + ": too long for a document information mark\n");
    QCOMPARE(namesIn(bench.out()), QStringList());
}

void TestCopies::passThrough()
{
    Bench bench;
    const Run run = bench.run({u"--version"_s});
    const Run expected = bench.run({u"--version"_s}, Bench::ghostscript());
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output, expected.output);
}

void TestCopies::passThroughTakesAnyOutput()
{
    Bench bench(samplePdf(2));
    const Run run = bench.run({u"-q"_s, u"-dBATCH"_s, u"-dNOPAUSE"_s, u"-sDEVICE=pngmono"_s,
                               "-sOutputFile="_L1 + bench.out(u"%d.png"_s), bench.in(u"a.pdf"_s)});
    QCOMPARE(run.status, 0);
    QCOMPARE(namesIn(bench.out()), (QStringList{u"1.png"_s, u"2.png"_s}));
}

void TestCopies::ghostscriptsStatus()
{
    Bench bench(samplePdf());
    write(bench.mark(), "undefinedword");
    const QStringList line = lineOf(bench, {}, bench.mark());
    const Run bare = bench.run(line, Bench::ghostscript());
    QVERIFY(bare.status > 0);
    QFile::remove(bench.out(u"a.pdf"_s));
    const Run run = bench.run(line);
    QCOMPARE(run.status, bare.status);
    QCOMPARE(run.output.left(run.output.indexOf('\n')),
             bare.output.left(bare.output.indexOf('\n')));
}

// Without -dBATCH, Ghostscript asks for more at the end.
void TestCopies::nothingToRead()
{
    Bench bench(samplePdf());
    const Run run =
        bench.run({u"-q"_s, u"-dNOPAUSE"_s, u"-sDEVICE=pdfwrite"_s,
                   "-sOutputFile="_L1 + bench.out(u"a.pdf"_s), u"-f"_s, bench.in(u"a.pdf"_s)});
    QCOMPARE(run.status, 0);
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), 1);
}

void TestCopies::fromADeepFolder()
{
    Bench bench;
    QString folder = bench.out(QString());
    for (int depth = 0; depth < 14; ++depth)
        folder += "/"_L1 + QString(200, u'd');
    QVERIFY(QDir().mkpath(folder));
    write(folder + "/a.pdf"_L1, samplePdf());
    const Run run = bench.run(Bench::line(folder + "/a.pdf"_L1, folder + "/b.pdf"_L1));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(tools::pages(folder + "/b.pdf"_L1), 1);
}

void TestCopies::permissionsOfTheFile()
{
    Bench bench(samplePdf());
    const Run run = bench.run(
        QStringList{u"-c"_s, u"umask 027; exec \"$0\" \"$@\""_s, Bench::corvgs()} + lineOf(bench),
        u"/bin/sh"_s);
    QCOMPARE(run.status, 0);
    QCOMPARE(QFile::permissions(bench.out(u"a.pdf"_s)) & QFile::Permissions(0x7077),
             QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
}

QTEST_GUILESS_MAIN(TestCopies)
#include "tst_engine_copies.moc"
