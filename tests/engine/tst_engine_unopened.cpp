// Documents that libqpdf can't open: what Ghostscript makes of them becomes the copy if it is
// proven.
#include "bench.h"
#include "documents.h"
#include "samples.h"

#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Much is drawn, so that Ghostscript makes it smaller.
QByteArray drawing(const QByteArray &trailer = {})
{
    documents::Parts parts;
    parts.content = QByteArray(" 0 0 m 9 9 l S").repeated(1000);
    parts.trailer = trailer;
    return documents::withParts(parts);
}

QByteArray tooDeep(const QByteArray &more = {})
{
    return "/X " + QByteArray("[").repeated(600) + QByteArray("]").repeated(600) + ' ' + more;
}

QByteArray tooDeepTrailer(const QByteArray &more = {})
{
    return drawing(tooDeep(more));
}

// All of it is hidden, and Ghostscript shows it.
QByteArray maskedPicture()
{
    documents::Parts parts;
    parts.trailer = tooDeep();
    parts.content = "q 100 0 0 100 20 20 cm /I Do Q";
    parts.resources = "/XObject << /I 6 0 R >>";
    parts.objects = {pdfStream("/Type /XObject /Subtype /Image /Width 20 /Height 20"
                               " /BitsPerComponent 8 /ColorSpace /DeviceRGB"
                               " /Mask [85 85 85 85 85 85]",
                               QByteArray(1200, '\x55'))};
    return documents::withParts(parts);
}

// The page stands in a node that leads back to the root.
QByteArray treeThatHasNoEnd()
{
    return drawing()
        .replace("/Kids [3 0 R]", "/Kids [5 0 R]")
        .replace("<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica",
                 "<< /Type /Pages /Count 1 /Parent 2 0 R /Kids [3 0 R 2 0 R] /X <<")
        .replace("/F 5 0 R", "/F << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
        .replace("/Encoding /WinAnsiEncoding >>", ">> >>");
}

QByteArray nothingAmongThePages()
{
    return drawing().replace("/Kids [3 0 R]", "/Kids [3 0 R null]");
}

QByteArray textOf(const QString &path, const QStringList &options = {})
{
    return tools::outputOf(u"pdftotext"_s, options + QStringList{path, u"-"_s}).simplified();
}

} // namespace

class TestUnopened : public QObject
{
    Q_OBJECT

private slots:
    void writtenAnew_data();
    void writtenAnew();
    void password();
    void description();
    void pdfa();
    void notSmaller();
    void isSigned();
    void refused_data();
    void refused();
    void withoutReader();

private:
    static Run copyOf(const Bench &bench, const QByteArray &original, const QStringList &more = {},
                      const QString &program = Bench::corvgs());
};

Run TestUnopened::copyOf(const Bench &bench, const QByteArray &original, const QStringList &more,
                         const QString &program)
{
    write(bench.in(u"a.pdf"_s), original);
    return bench.run(lineOf(bench, more), program);
}

void TestUnopened::writtenAnew_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::newRow("a trailer that is too deep") << tooDeepTrailer();
    QTest::newRow("a tree that has no end") << treeThatHasNoEnd();
    QTest::newRow("nothing among the pages") << nothingAmongThePages();
}

void TestUnopened::writtenAnew()
{
    QFETCH(QByteArray, original);
    const Bench bench;
    const Run run = copyOf(bench, original);
    QVERIFY2(run.status == 0, run.errors);
    QCOMPARE(run.output.trimmed(), QByteArray("corvgs: written anew: the document is damaged"));
    const QByteArray copy = contentOf(bench.out(u"a.pdf"_s));
    QVERIFY(copy.size() < original.size());
    QCOMPARE(textOf(bench.out(u"a.pdf"_s)), QByteArray("A line of text"));
    tools::outputOf(u"qpdf"_s, {u"--check"_s, bench.out(u"a.pdf"_s)});
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), 1);
}

void TestUnopened::password()
{
    const Bench bench;
    QCOMPARE(
        copyOf(bench, tooDeepTrailer(), {u"-sUserPassword=u"_s, u"-sOwnerPassword=o"_s}).status, 0);
    QVERIFY(contentOf(bench.out(u"a.pdf"_s)).contains("/Encrypt"));
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), -1);
    QCOMPARE(textOf(bench.out(u"a.pdf"_s), {u"-upw"_s, u"u"_s}), QByteArray("A line of text"));
}

void TestUnopened::description()
{
    const Bench bench(tooDeepTrailer());
    write(bench.mark(), "[ /Title (Minutes) /Creator ( ) /Producer ( ) /DOCINFO pdfmark");
    QCOMPARE(bench.run(lineOf(bench, {}, bench.mark())).status, 0);
    const QByteArray info = tools::outputOf(u"pdfinfo"_s, {bench.out(u"a.pdf"_s)});
    QVERIFY2(info.contains("Minutes"), info);
    QVERIFY2(!info.contains("Ghostscript"), info);
}

void TestUnopened::pdfa()
{
    const Bench bench;
    QCOMPARE(copyOf(bench, tooDeepTrailer(), {u"-dPDFA"_s}).status, 0);
    QVERIFY(contentOf(bench.out(u"a.pdf"_s)).contains("pdfaid:part"));
    QCOMPARE(textOf(bench.out(u"a.pdf"_s)), QByteArray("A line of text"));
}

// The reader opens the original as well as it would open a larger copy.
void TestUnopened::notSmaller()
{
    documents::Parts parts;
    const QByteArray original =
        documents::withParts(parts).replace("/Kids [3 0 R]", "/Kids [3 0 R null]");
    const Bench bench;
    const Run run = copyOf(bench, original);
    QVERIFY2(run.status == 0, run.errors);
    QCOMPARE(contentOf(bench.out(u"a.pdf"_s)), original);
    QVERIFY2(run.output.contains("the copy is the original"), run.output);
}

void TestUnopened::isSigned()
{
    const QByteArray original = tooDeepTrailer("/S << /ByteRange [0 1 2 3] >>");
    const Bench bench;
    const Run run = copyOf(bench, original);
    QVERIFY2(run.status == 0, run.errors);
    QCOMPARE(contentOf(bench.out(u"a.pdf"_s)), original);
    QVERIFY2(run.output.contains("it is signed"), run.output);
    const Bench other;
    QCOMPARE(copyOf(other, original, {u"-sUserPassword=u"_s}).status, 0);
    QVERIFY(contentOf(other.out(u"a.pdf"_s)).contains("/Encrypt"));
}

void TestUnopened::refused_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("nothing") << QByteArray() << QByteArray("unable to find trailer");
    QTest::newRow("no document") << QByteArray("(a program) print") << QByteArray("unable to find");
    QTest::newRow("nothing that the reader can read")
        << drawing().replace("/Root 1 0 R", "") << QByteArray("unable to find /Root");
    QTest::newRow("cut off") << drawing().left(drawing().indexOf("xref"))
                             << QByteArray("unable to find trailer");
    QTest::newRow("restrictions that nobody knows")
        << tooDeepTrailer("/Y << /Encrypt 1 >>") << QByteArray("unable to find trailer");
    QTest::newRow("what Ghostscript can't rewrite")
        << maskedPicture() << QByteArray("page 1 would not show or say the same");
}

void TestUnopened::refused()
{
    QFETCH(QByteArray, original);
    QFETCH(QByteArray, reason);
    const Bench bench;
    const Run run = copyOf(bench, original);
    QVERIFY(run.status > 0);
    QVERIFY2(run.errors.contains(reason), run.errors);
    QCOMPARE(namesIn(bench.out()), QStringList());
}

// The driver has none.
void TestUnopened::withoutReader()
{
    const Bench bench;
    const Run run = copyOf(bench, tooDeepTrailer(), {}, Bench::driver(Bench::Confined));
    QVERIFY(run.status > 0);
    QVERIFY2(run.errors.contains("unable to find trailer"), run.errors);
    QCOMPARE(namesIn(bench.out()), QStringList());
}

QTEST_GUILESS_MAIN(TestUnopened)
#include "tst_engine_unopened.moc"
