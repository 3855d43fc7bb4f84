// PDF/A: either an independent validator agrees that the copy is PDF/A-1b, or there is no copy.
#include "bench.h"
#include "documents.h"
#include "samples.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString classPath()
{
    QStringList jars;
    for (const char *jar : {"preflight", "pdfbox2", "fontbox2", "xmpbox", "commons-logging",
                            "javax.activation", "jaxb-api"})
        jars << u"/usr/share/java/%1.jar"_s.arg(QLatin1StringView(jar));
    return jars.join(u':');
}

// The validator's verdict: empty if the file is valid.
QByteArray objectionsTo(const QString &path)
{
    const tools::Result validated = tools::run(
        u"java"_s, {u"-cp"_s, classPath(), u"org.apache.pdfbox.preflight.Validator_A1b"_s, path});
    if (validated.status == 0 && validated.output.contains("is a valid PDF/A-1b file"))
        return {};
    return "not valid: " + validated.output + validated.errors;
}

QByteArray withGraphicsState(const QByteArray &entries)
{
    documents::Parts parts;
    parts.resources = "/ExtGState << /G 6 0 R >>";
    parts.content = "/G gs 0 1 0 rg 20 20 100 100 re f 1 0 0 rg 60 60 100 80 re f";
    parts.objects = {"<< /Type /ExtGState " + entries + " >>"};
    return documents::withParts(parts);
}

QByteArray withImage(const QByteArray &entries, int bytes)
{
    documents::Parts parts;
    parts.resources = "/XObject << /I 6 0 R >>";
    parts.content = "q 100 0 0 100 20 20 cm /I Do Q";
    parts.objects = {
        pdfStream("/Type /XObject /Subtype /Image /Width 20 /Height 20 /BitsPerComponent 8 " +
                      entries,
                  QByteArray(bytes, '\x55')),
        pdfStream("/Type /XObject /Subtype /Image /Width 20 /Height 20 /BitsPerComponent 8"
                  " /ColorSpace /DeviceGray",
                  QByteArray(400, '\x77'))};
    return documents::withParts(parts);
}

// Two inches of it at 600 dpi, from black to white in cells of 8 by 8 dots.
QByteArray halftone()
{
    constexpr int side = 1200;
    QByteArray samples(side * side / 8, '\0');
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const int threshold = (x % 8 * 5 + y % 8 * 3 + x % 8 * (y % 8)) % 64;
            if (x * 64 / side > threshold)
                samples[(y * side + x) / 8] = char(samples[(y * side + x) / 8] | (0x80 >> (x % 8)));
        }
    }
    documents::Parts parts;
    parts.resources = "/XObject << /I 6 0 R >>";
    parts.content = "q 144 0 0 144 20 8 cm /I Do Q";
    parts.objects = {pdfStream("/Type /XObject /Subtype /Image /Width 1200 /Height 1200"
                               " /BitsPerComponent 1 /ColorSpace /DeviceGray",
                               samples)};
    return documents::withParts(parts);
}

QByteArray withoutItsFont(bool numbered)
{
    const QByteArray font = "<< /Type /Font /Subtype /CIDFontType0 /BaseFont /Song /CIDSystemInfo"
                            " << /Registry (Adobe) /Ordering (Japan1) /Supplement 2 >>"
                            " /FontDescriptor 8 0 R >>";
    documents::Parts parts;
    parts.resources = "/X 0";
    parts.content = "BT /C 12 Tf 20 100 Td <00410042> Tj ET";
    parts.objects = {"<< /Type /Font /Subtype /Type0 /BaseFont /Song /Encoding /Identity-H"
                     " /DescendantFonts [" +
                         (numbered ? "7 0 R" : font) + "] >>",
                     font,
                     "<< /Type /FontDescriptor /FontName /Song /Flags 4 /FontBBox [0 0 1000 1000]"
                     " /ItalicAngle 0 /Ascent 800 /Descent -200 /CapHeight 700 /StemV 80 >>"};
    return documents::withParts(parts).replace("/F 5 0 R >> /X 0", "/F 5 0 R /C 6 0 R >>");
}

} // namespace

class TestPdfa : public QObject
{
    Q_OBJECT

private slots:
    void validatorTellsThemApart();
    void valid_data();
    void valid();
    void refused_data();
    void refused();
    void linksStay();
    void bilevelAsKept_data();
    void bilevelAsKept();
    void withoutReader();
    void texts_data();
    void texts();
    void withoutPdfaNothingIsClaimed();

private:
    static Run copyOf(const Bench &bench, const QByteArray &original,
                      const QStringList &more = {u"-dPDFA"_s}, const QByteArray &mark = {});
};

Run TestPdfa::copyOf(const Bench &bench, const QByteArray &original, const QStringList &more,
                     const QByteArray &mark)
{
    write(bench.in(u"a.pdf"_s), original);
    if (!mark.isEmpty())
        write(bench.mark(), mark);
    return bench.run(lineOf(bench, more, mark.isEmpty() ? QString() : bench.mark()));
}

// What Ghostscript alone calls PDF/A is none.
void TestPdfa::validatorTellsThemApart()
{
    const Bench bench(samplePdf());
    const Run run = bench.run(lineOf(bench, {u"-dPDFA"_s}), Bench::ghostscript());
    QCOMPARE(run.status, 0);
    QVERIFY(objectionsTo(bench.out(u"a.pdf"_s)).contains("not a valid PDF/A-1b file"));
}

void TestPdfa::valid_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::newRow("text and a gray image") << samplePdf(3, 40);
    QTest::newRow("form") << documents::form();
    QTest::newRow("turned text") << documents::upright();
    QTest::newRow("scan") << documents::scan();
    QTest::newRow("RGB") << withImage("/ColorSpace /DeviceRGB", 1200);
    QTest::newRow("CMYK") << withImage("/ColorSpace /DeviceCMYK", 1600);
    QTest::newRow("interpolated") << withImage("/ColorSpace /DeviceRGB /Interpolate true", 1200);
    QTest::newRow("transparency without text")
        << withGraphicsState("/ca 0.5 /CA 0.5")
               .replace("(A line of text) Tj", "                   ");
    QTest::newRow("encrypted original")
        << documents::rewritten(samplePdf(), {u"--encrypt"_s, u""_s, u"o"_s, u"256"_s, u"--"_s});
    QTest::newRow("object streams")
        << documents::rewritten(samplePdf(5), {u"--object-streams=generate"_s});
}

void TestPdfa::valid()
{
    QFETCH(QByteArray, original);
    const Bench bench;
    const Run run = copyOf(bench, original);
    QCOMPARE(run.status, 0);
    QCOMPARE(objectionsTo(bench.out(u"a.pdf"_s)), QByteArray());
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), tools::pages(bench.in(u"a.pdf"_s)));
    QCOMPARE(tools::outputOf(u"pdftotext"_s, {bench.out(u"a.pdf"_s), u"-"_s}).simplified(),
             tools::outputOf(u"pdftotext"_s, {bench.in(u"a.pdf"_s), u"-"_s}).simplified());
}

void TestPdfa::refused_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<QByteArray>("reason");
    const QStringList pdfa = {u"-dPDFA"_s};
    QTest::newRow("user password") << samplePdf() << (pdfa + QStringList{u"-sUserPassword=u"_s})
                                   << QByteArray("PDF/A allows no passwords");
    QTest::newRow("owner password") << samplePdf() << (pdfa + QStringList{u"-sOwnerPassword=u"_s})
                                    << QByteArray("PDF/A allows no passwords");
    const Bench bench;
    write(bench.in(u"table.csv"_s), "a;b\n");
    QTest::newRow("attachment") << documents::rewritten(
                                       samplePdf(),
                                       {u"--add-attachment"_s, bench.in(u"table.csv"_s), u"--"_s})
                                << pdfa << QByteArray("attachment");
    for (const char *state : {"/ca 0.5 /CA 0.5", "/BM /Multiply"})
        QTest::newRow(state) << withGraphicsState(state) << pdfa
                             << QByteArray("text would be lost");
    QTest::newRow("soft mask") << withImage("/ColorSpace /DeviceRGB /SMask 7 0 R", 1200) << pdfa
                               << QByteArray("text would be lost");
    QTest::newRow("a link that runs a script")
        << documents::links("/MediaBox [0 0 200 200]", "/S /JavaScript /JS (app.beep\\(0\\))")
        << pdfa << QByteArray("a forbidden action");
    QTest::newRow("links on a turned page")
        << documents::links("/Rotate 90 /MediaBox [0 0 200 200]") << pdfa
        << QByteArray("links would be lost");
    QTest::newRow("a font that is not there")
        << withoutItsFont(true) << pdfa << QByteArray("does not bring its fonts along");
    QTest::newRow("the same, within the font that uses it")
        << withoutItsFont(false) << pdfa << QByteArray("does not bring its fonts along");
    QTest::newRow("a mask that is lost")
        << withImage("/ColorSpace /DeviceRGB /Mask [85 85 85 85 85 85]", 1200) << pdfa
        << QByteArray("page 1 would not show or say the same");
    QTest::newRow("a password") << documents::rewritten(samplePdf(), {u"--encrypt"_s, u"u"_s,
                                                                      u"o"_s, u"256"_s, u"--"_s})
                                << pdfa << QByteArray("it takes a password");
    QTest::newRow("unreadable") << documents::unreadableForGhostscript() << pdfa
                                << QByteArray("could not open the document");
    QTest::newRow("no document") << QByteArray("rubbish") << pdfa
                                 << QByteArray("unable to find trailer dictionary");
}

void TestPdfa::refused()
{
    QFETCH(QByteArray, original);
    QFETCH(QStringList, switches);
    QFETCH(QByteArray, reason);
    const Bench bench;
    const Run run = copyOf(bench, original, switches);
    QVERIFY(run.status > 0);
    QVERIFY2(run.errors.contains(reason), run.errors);
    QCOMPARE(namesIn(bench.out()), QStringList());
}

void TestPdfa::bilevelAsKept_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("filter");
    QTest::addColumn<int>("edge");
    QTest::newRow("averaged") << QByteArray("Bicubic") << QByteArray("FlateEncode") << 600;
    QTest::newRow("in JBIG2") << QByteArray("Bicubic") << QByteArray("JBIG2Encode") << 600;
    // Every other pixel of every other row alone does not show what was there.
    QTest::newRow("subsampled") << QByteArray("Subsample") << QByteArray("FlateEncode") << 1200;
    QTest::newRow("as a fax") << QByteArray("Bicubic") << QByteArray("CCITTFaxEncode") << 1200;
}

// Ghostscript alone makes areas of one tone of a halftone.
void TestPdfa::bilevelAsKept()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, filter);
    QFETCH(int, edge);
    const Bench bench(halftone());
    QList<QByteArray> pixels;
    for (const QStringList &more : {QStringList(), QStringList{u"-dPDFA"_s}}) {
        const QString copy = bench.out(u"a%1.pdf"_s.arg(more.size()));
        QStringList line = Bench::line(bench.in(u"a.pdf"_s), copy, more);
        line.replaceInStrings(u"-dMonoImageDownsampleType=/Bicubic"_s,
                              "-dMonoImageDownsampleType=/"_L1 + type);
        line.replaceInStrings(u"-dMonoImageFilter=/FlateEncode"_s,
                              "-dMonoImageFilter=/"_L1 + filter);
        const Run run = bench.run(line);
        QVERIFY2(run.status == 0, run.errors);
        tools::outputOf(u"pdfimages"_s, {copy, bench.temporary() + u"/image"_s});
        pixels << contentOf(bench.temporary() + u"/image-000.pbm"_s);
        if (filter == "JBIG2Encode")
            QVERIFY(contentOf(copy).contains("/JBIG2Decode"));
    }
    QCOMPARE(pixels[0].size(), edge * edge / 8 + (edge > 999 ? 13 : 11));
    QVERIFY(pixels[1] == pixels[0]);
    QCOMPARE(objectionsTo(bench.out(u"a1.pdf"_s)), QByteArray());
}

// The driver has none.
void TestPdfa::withoutReader()
{
    const Bench bench(samplePdf());
    const Run run = bench.run(lineOf(bench, {u"-dPDFA"_s}), Bench::driver(Bench::Confined));
    QCOMPARE(run.status, 0);
    QCOMPARE(run.output.simplified(), QByteArray("corvgs: the copy is unproven: the reader that "
                                                 "has to prove it isn't there"));
    QCOMPARE(objectionsTo(bench.out(u"a.pdf"_s)), QByteArray());
}

// Links have no print flag, as most programs write them; Ghostscript drops such from PDF/A.
void TestPdfa::linksStay()
{
    const Bench bench;
    QCOMPARE(copyOf(bench, documents::links()).status, 0);
    QCOMPARE(objectionsTo(bench.out(u"a.pdf"_s)), QByteArray());
    const QByteArray syntax = tools::outputOf(
        u"qpdf"_s, {u"--qdf"_s, u"--object-streams=disable"_s, bench.out(u"a.pdf"_s), u"-"_s});
    QCOMPARE(syntax.count("/Subtype /Link"), 2);
    QVERIFY(syntax.contains("(https://example.org/)"));
    const auto destination = syntax.indexOf("/Dest [");
    const QByteArray secondPage = syntax.mid(destination + 7).trimmed();
    const QByteArray number = secondPage.left(secondPage.indexOf(' '));
    const auto pages = syntax.indexOf("/Kids [");
    QCOMPARE(syntax.mid(pages + 7).simplified().split(' ').value(3), number);
}

void TestPdfa::texts_data()
{
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<QByteArray>("title");
    QTest::newRow("of the original") << QByteArray() << QByteArray("Zo\xc3\xab");
    QTest::newRow("of the mark") << QByteArray("[ /Title (\xe5\xa0\xb1\\(1\\)) /DOCINFO pdfmark")
                                 << QByteArray("\xe5\xa0\xb1(1)");
    QTest::newRow("blank") << QByteArray("[ /Title ( ) /DOCINFO pdfmark") << QByteArray("");
    QTest::newRow("line break") << QByteArray("[ /Title (a\\nb) /DOCINFO pdfmark")
                                << QByteArray("a b");
    QTest::newRow("no letter at all")
        << QByteArray("[ /Title (a\xef\xbf\xbf z\xef\xbf\xbe) /DOCINFO pdfmark")
        << QByteArray("a  z");
    QTest::newRow("none of the mark's")
        << QByteArray("[ /Creator ( ) \n /Producer ( ) \n /DOCINFO pdfmark")
        << QByteArray("Zo\xc3\xab");
}

void TestPdfa::texts()
{
    QFETCH(QByteArray, mark);
    QFETCH(QByteArray, title);
    documents::Parts parts;
    parts.trailer = "/Info 6 0 R";
    parts.objects = {"<< /Title <FEFF005A006F00EB> /Author (A & B) >>"};
    const Bench bench;
    QCOMPARE(copyOf(bench, documents::withParts(parts), {u"-dPDFA"_s}, mark).status, 0);
    QCOMPARE(objectionsTo(bench.out(u"a.pdf"_s)), QByteArray());
    const QByteArray info =
        tools::outputOf(u"pdfinfo"_s, {u"-enc"_s, u"UTF-8"_s, bench.out(u"a.pdf"_s)});
    const QByteArray line = info.contains("Title:") ? info.mid(info.indexOf("Title:") + 6) : "\n";
    QCOMPARE(line.left(line.indexOf('\n')).trimmed(), title);
    QVERIFY2(info.contains("A & B"), info);
}

void TestPdfa::withoutPdfaNothingIsClaimed()
{
    const Bench bench;
    QCOMPARE(copyOf(bench, samplePdf(), {u"-dPDFA"_s}).status, 0);
    const QByteArray pdfa = contentOf(bench.out(u"a.pdf"_s));
    QVERIFY(pdfa.contains("pdfaid:part>"));
    for (const QByteArray &original : {pdfa, documents::form()}) {
        const Bench other;
        QCOMPARE(copyOf(other, original, {u"-sOwnerPassword=o"_s}).status, 0);
        QVERIFY(!tools::outputOf(u"pdfinfo"_s, {u"-meta"_s, other.out(u"a.pdf"_s)})
                     .contains("pdfaid:part>"));
    }
}

QTEST_GUILESS_MAIN(TestPdfa)
#include "tst_engine_pdfa.moc"
