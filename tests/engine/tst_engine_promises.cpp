// What a copy keeps, and that it is never larger than its original.
#include "bench.h"
#include "documents.h"
#include "samples.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;
using tools::outputOf;

class TestPromises : public QObject
{
    Q_OBJECT

private slots:
    void neverLarger_data();
    void neverLarger();
    void theOriginalItself();
    void objectStreamsOnlyIfTheyMustBe();
    void repairedEvenIfLarger();
    void formKeepsItsFields();
    void oddFormKeepsItsFields_data();
    void oddFormKeepsItsFields();
    void wrongCountIsDamage_data();
    void wrongCountIsDamage();
    void ownEntriesStay();
    void formWithPassword();
    void formWithDescription();
    void ghostscriptIsNotAsked();
    void damagedForm();
    void pagesAreNotTurned();
    void attachmentStays();
    void layersStay_data();
    void layersStay();
    void linksStay();
    void whatIsAskedOfViewersStays();
    void destinationsStay_data();
    void destinationsStay();
    void lettersStay();
    void textInUtf8();
    void scanKeepsItsStream();
    void resampledScanIsGhostscripts();
    void jbig2_data();
    void jbig2();
    void whatIsBilevel_data();
    void whatIsBilevel();

private:
    struct Copies
    {
        Run run;
        QString path;
        qint64 size = 0;
    };
    static Copies copyOf(const Bench &bench, const QByteArray &original,
                         const QStringList &more = {}, const QByteArray &mark = {});
    static QByteArray plainSyntax(const QString &path, const QString &password = {});
};

TestPromises::Copies TestPromises::copyOf(const Bench &bench, const QByteArray &original,
                                          const QStringList &more, const QByteArray &mark)
{
    write(bench.in(u"a.pdf"_s), original);
    if (!mark.isEmpty())
        write(bench.mark(), mark);
    const QString path = bench.out(u"a.pdf"_s);
    const Run run = bench.run(
        Bench::line(bench.in(u"a.pdf"_s), path, more, mark.isEmpty() ? QString() : bench.mark()));
    return {run, path, QFileInfo(path).size()};
}

QByteArray TestPromises::plainSyntax(const QString &path, const QString &password)
{
    return outputOf(u"qpdf"_s, {"--password="_L1 + password, u"--decrypt"_s, u"--qdf"_s,
                                u"--object-streams=disable"_s, path, u"-"_s});
}

void TestPromises::neverLarger_data()
{
    QTest::addColumn<QByteArray>("original");
    const QStringList packed = {u"--object-streams=generate"_s, u"--recompress-flate"_s,
                                u"--compression-level=9"_s};
    QTest::newRow("tiny") << documents::withParts({});
    QTest::newRow("form") << documents::form();
    QTest::newRow("packed form") << documents::rewritten(documents::form(), packed);
    QTest::newRow("packed pages") << documents::rewritten(samplePdf(40), packed);
    QTest::newRow("scan") << documents::scan();
    QTest::newRow("packed scan") << documents::rewritten(documents::scan(), packed);
    QTest::newRow("Ghostscript can't read it") << documents::unreadableForGhostscript();
}

void TestPromises::neverLarger()
{
    QFETCH(QByteArray, original);
    const Bench bench;
    const Copies copy = copyOf(bench, original);
    QCOMPARE(copy.run.errors, QByteArray());
    QCOMPARE(copy.run.status, 0);
    QVERIFY2(copy.size <= original.size(),
             qPrintable(u"%1 of %2 bytes"_s.arg(copy.size).arg(original.size())));
    QCOMPARE(tools::pages(copy.path), tools::pages(bench.in(u"a.pdf"_s)));
    QCOMPARE(outputOf(u"pdftotext"_s, {copy.path, u"-"_s}),
             outputOf(u"pdftotext"_s, {bench.in(u"a.pdf"_s), u"-"_s}));
}

// Nothing could be saved, and nothing was asked for.
void TestPromises::theOriginalItself()
{
    const QByteArray original = documents::withParts({});
    const Bench bench;
    QCOMPARE(contentOf(copyOf(bench, original).path), original);
    const Bench other;
    const Copies described = copyOf(other, original, {}, "[ /Title (Accounts) /DOCINFO pdfmark");
    QVERIFY(outputOf(u"pdfinfo"_s, {described.path}).contains("Accounts"));
}

void TestPromises::objectStreamsOnlyIfTheyMustBe()
{
    const Bench bench;
    const Copies loose = copyOf(bench, documents::rewritten(samplePdf(9, 100), {}));
    QVERIFY(!contentOf(loose.path).contains("/ObjStm"));
    const QByteArray packed =
        documents::rewritten(documents::form(), {u"--object-streams=generate"_s});
    QVERIFY(packed.contains("/ObjStm"));
    const Bench other;
    const Copies tight = copyOf(other, packed);
    QVERIFY(contentOf(tight.path).contains("/ObjStm"));
    QVERIFY(tight.size <= packed.size());
}

// A document whose end is damaged can't be read by everybody; the copy can.
void TestPromises::repairedEvenIfLarger()
{
    const QByteArray original = samplePdf(2).chopped(12);
    const Bench bench;
    const Copies copy = copyOf(bench, original);
    QCOMPARE(copy.run.errors, QByteArray());
    QCOMPARE(copy.run.status, 0);
    QVERIFY(contentOf(copy.path).contains("startxref"));
    QVERIFY(copy.size <= original.size() + 1024);
    QCOMPARE(tools::pages(copy.path), 2);
}

void TestPromises::formKeepsItsFields()
{
    const Bench bench;
    const Copies copy = copyOf(bench, documents::form());
    const QByteArray syntax = plainSyntax(copy.path);
    QVERIFY(syntax.contains("/T (name)"));
    QVERIFY(syntax.contains("/V (Zoe)"));
    QVERIFY(syntax.contains("/AcroForm"));
}

// What is odd about a document is no reason to take its fields away.
void TestPromises::oddFormKeepsItsFields_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QByteArray>("object");
    QTest::newRow("an empty stream")
        << QByteArray("/Odd 8 0 R") << pdfStream("/Filter /FlateDecode", {});
    QTest::newRow("a stream that breaks off")
        << QByteArray("/Odd 8 0 R")
        << pdfStream("/Filter /FlateDecode", QByteArray::fromHex("789c4b4c4a"));
    QTest::newRow("one nobody refers to")
        << QByteArray() << pdfStream("/Filter /FlateDecode", QByteArray::fromHex("789c4b4c4a"));
    QTest::newRow("a key twice") << QByteArray("/Odd 1 /Odd 2") << QByteArray("null");
}

void TestPromises::oddFormKeepsItsFields()
{
    QFETCH(QByteArray, entry);
    QFETCH(QByteArray, object);
    const Bench bench;
    const Copies copy = copyOf(bench, documents::form({object}, entry));
    QCOMPARE(copy.run.status, 0);
    const QByteArray content = contentOf(copy.path);
    QVERIFY(content.contains("/AcroForm"));
    QVERIFY(content.contains("(name)"));
}

// Viewers show as many pages as the page tree claims, so no copy shows what the original shows.
void TestPromises::wrongCountIsDamage_data()
{
    QTest::addColumn<QByteArray>("count");
    for (const char *count : {"-1", "0 "})
        QTest::newRow(count) << QByteArray(count);
}

void TestPromises::wrongCountIsDamage()
{
    QFETCH(QByteArray, count);
    const Bench bench;
    const Copies copy = copyOf(bench, documents::form().replace("/Count 1 ", "/Count " + count));
    QVERIFY(copy.run.status > 0);
    QVERIFY2(copy.run.errors.endsWith(": the document is damaged\n"), copy.run.errors);
    QCOMPARE(namesIn(bench.out()), QStringList());
}

void TestPromises::ownEntriesStay()
{
    const QByteArray original =
        documents::form({"<< /Company (Parish) /Title (Old) >>"}, {}, "/Info 8 0 R");
    const Bench bench;
    const Copies copy = copyOf(bench, original);
    QVERIFY(plainSyntax(copy.path).contains("/Company (Parish)"));
    QVERIFY(plainSyntax(copy.path).contains("/Title (Old)"));
    const Bench other;
    const Copies described = copyOf(other, original, {}, "[ /Title (New) /DOCINFO pdfmark");
    QVERIFY(plainSyntax(described.path).contains("/Company (Parish)"));
    QVERIFY(plainSyntax(described.path).contains("/Title (New)"));
}

void TestPromises::formWithPassword()
{
    const Bench bench;
    const Copies copy =
        copyOf(bench, documents::form(),
               {u"-sUserPassword=u"_s, u"-sOwnerPassword=o"_s, u"-dPermissions=-8"_s});
    QCOMPARE(copy.run.errors, QByteArray());
    QCOMPARE(tools::pages(copy.path), -1);
    QCOMPARE(tools::pages(copy.path, u"u"_s), 1);
    QVERIFY(plainSyntax(copy.path, u"u"_s).contains("/V (Zoe)"));
    const QByteArray locks =
        outputOf(u"qpdf"_s, {u"--password=u"_s, u"--show-encryption"_s, copy.path});
    QVERIFY2(locks.contains("R = 3"), locks);
    QVERIFY2(locks.contains("print low resolution: not allowed"), locks);
    QVERIFY2(locks.contains("print high resolution: not allowed"), locks);
    QVERIFY2(locks.contains("extract for any purpose: allowed"), locks);
    QVERIFY(outputOf(u"qpdf"_s, {u"--password=o"_s, u"--show-encryption"_s, copy.path})
                .contains("Supplied password is owner password"));
}

void TestPromises::formWithDescription()
{
    const Bench bench;
    const Copies copy =
        copyOf(bench, documents::form(), {}, "[ /Title (Accounts) /Creator ( ) /DOCINFO pdfmark");
    const QByteArray info = outputOf(u"pdfinfo"_s, {copy.path});
    QVERIFY2(info.contains("Accounts"), info);
    QVERIFY(plainSyntax(copy.path).contains("/V (Zoe)"));
}

// Ghostscript alone leaves a blank page and is content.
void TestPromises::ghostscriptIsNotAsked()
{
    const QByteArray original = documents::unreadableForGhostscript();
    const Bench bench;
    const Copies copy = copyOf(bench, original);
    QCOMPARE(copy.run.status, 0);
    QCOMPARE(outputOf(u"pdftotext"_s, {copy.path, u"-"_s}).trimmed(), QByteArray("A line of text"));
    const Bench other;
    const Copies described = copyOf(other, original, {}, "[ /Title (Accounts) /DOCINFO pdfmark");
    QVERIFY(outputOf(u"pdfinfo"_s, {described.path}).contains("Accounts"));
    QCOMPARE(plainSyntax(described.path).count("/Kids"), 1);
}

// A form that breaks off stays as it is; the text beside it does, too.
void TestPromises::damagedForm()
{
    documents::Parts parts;
    parts.trailer = "/Info 2 0 R";
    parts.resources = "/XObject << /X 6 0 R >>";
    parts.content = "/X Do";
    parts.objects = {pdfStream("/Type /XObject /Subtype /Form /BBox [0 0 9 9] /Filter /FlateDecode",
                               QByteArray::fromHex("789c4b4c4a"))};
    const Bench bench;
    const Copies copy = copyOf(bench, documents::withParts(parts));
    QCOMPARE(copy.run.errors, QByteArray());
    QCOMPARE(copy.run.status, 0);
    QCOMPARE(tools::pages(copy.path), 1);
    QCOMPARE(outputOf(u"pdftotext"_s, {copy.path, u"-"_s}),
             outputOf(u"pdftotext"_s, {bench.in(u"a.pdf"_s), u"-"_s}));
}

void TestPromises::pagesAreNotTurned()
{
    const QByteArray original = documents::upright();
    const Bench bench(original);
    (void)bench.run(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"plain.pdf"_s)),
                    Bench::ghostscript());
    QVERIFY(!outputOf(u"pdfinfo"_s, {bench.out(u"plain.pdf"_s)}).contains("rot:        0"));
    const Copies copy = copyOf(bench, original, {u"-sUserPassword="_s, u"-sOwnerPassword=o"_s});
    QVERIFY(outputOf(u"pdfinfo"_s, {copy.path}).contains("rot:        0"));
}

void TestPromises::attachmentStays()
{
    const Bench bench;
    write(bench.in(u"table.csv"_s), "a;b\n1;2\n");
    const QByteArray original = documents::rewritten(
        samplePdf(3, 200), {u"--add-attachment"_s, bench.in(u"table.csv"_s), u"--"_s});
    const Copies copy = copyOf(bench, original);
    QCOMPARE(outputOf(u"qpdf"_s, {u"--show-attachment=table.csv"_s, copy.path}),
             QByteArray("a;b\n1;2\n"));
}

void TestPromises::layersStay_data()
{
    QTest::addColumn<QByteArray>("state");
    QTest::newRow("off") << QByteArray("/OFF [6 0 R]");
    QTest::newRow("off unless on") << QByteArray("/BaseState /OFF");
    QTest::newRow("on") << QByteArray("/BaseState /OFF /ON [6 0 R]");
    QTest::newRow("on as well") << QByteArray("/OFF []");
}

void TestPromises::layersStay()
{
    QFETCH(QByteArray, state);
    documents::Parts parts;
    parts.content = "/OC /L BDC " + QByteArray("0 0 m 9 9 l S ").repeated(2000) + "EMC";
    parts.resources = "/Properties << /L 6 0 R >>";
    parts.catalogue = "/OCProperties << /OCGs [6 0 R] /D << " + state + " >> >>";
    parts.objects = {"<< /Type /OCG /Name (Plan) >>"};
    const Bench bench;
    const QByteArray syntax = plainSyntax(copyOf(bench, documents::withParts(parts)).path);
    QVERIFY(syntax.count("0 0 m") > 0);
    QVERIFY(syntax.contains("/OCG"));
    QVERIFY(syntax.contains("/OCProperties"));
}

void TestPromises::linksStay()
{
    const Bench bench;
    const Copies copy = copyOf(bench, documents::links());
    const QByteArray syntax = plainSyntax(copy.path);
    QCOMPARE(syntax.count("/Subtype /Link"), 2);
    QVERIFY(syntax.contains("(https://example.org/)"));
}

void TestPromises::whatIsAskedOfViewersStays()
{
    documents::Parts parts;
    parts.content = QByteArray("0 0 m 9 9 l S ").repeated(2000);
    parts.catalogue = "/Lang (ar) /PageLayout /TwoColumnRight /PageMode /UseThumbs "
                      "/ViewerPreferences << /Direction /R2L /Duplex /Simplex >> "
                      "/PageLabels << /Nums [0 << /S /r >>] >>";
    const Bench bench;
    const QByteArray syntax =
        plainSyntax(copyOf(bench, documents::withParts(parts)).path).simplified();
    for (const char *entry : {"/Lang (ar)", "/PageLayout /TwoColumnRight", "/PageMode /UseThumbs",
                              "/Direction /R2L", "/Duplex /Simplex", "/Nums [ 0 << /S /r >>"})
        QVERIFY2(syntax.contains(entry), entry);
}

void TestPromises::lettersStay()
{
    const Bench bench;
    const Copies copy = copyOf(bench, documents::ligature());
    const QByteArray text = outputOf(u"pdftotext"_s, {bench.in(u"a.pdf"_s), u"-"_s});
    QVERIFY2(text.contains("affib"), text);
    (void)bench.run(Bench::line(bench.in(u"a.pdf"_s), bench.out(u"plain.pdf"_s)),
                    Bench::ghostscript());
    QVERIFY(outputOf(u"pdftotext"_s, {bench.out(u"plain.pdf"_s), u"-"_s}) != text);
    QCOMPARE(outputOf(u"pdftotext"_s, {copy.path, u"-"_s}), text);
    QVERIFY(copy.size < QFileInfo(bench.in(u"a.pdf"_s)).size() / 2);
}

void TestPromises::destinationsStay_data()
{
    QTest::addColumn<QByteArray>("original");
    const QByteArray moved = "/MediaBox [50 50 250 250]";
    QTest::newRow("links with a number") << documents::links(moved);
    for (const char *target : {"/Dest /end", "/Dest [4 0 R /XYZ 60 200 0]", "/Dest [4 0 R /FitH 9]",
                               "/A << /S /GoTo /D [4 0 R /XYZ 60 200 0] >>"}) {
        const QByteArray link =
            "<< /Type /Annot /Subtype /Link /Rect [60 60 90 90] /Border [0 0 0] ";
        QTest::newRow(target) << documents::links(moved, {}, link + target + " >>");
    }
}

// The numbers of a destination are those of its page, which Ghostscript moves.
void TestPromises::destinationsStay()
{
    QFETCH(QByteArray, original);
    const Bench bench;
    const Copies copy = copyOf(bench, original);
    QCOMPARE(copy.run.status, 0);
    const QByteArray info = outputOf(u"pdfinfo"_s, {u"-box"_s, copy.path});
    QVERIFY2(info.contains("50.00    50.00   250.00   250.00"), info);
    QVERIFY(plainSyntax(copy.path).simplified().contains("/XYZ 60 200 0 ]"));
}

// The window hands over the bytes of the locale.
void TestPromises::textInUtf8()
{
    const Bench bench;
    const Copies copy = copyOf(bench, samplePdf(2, 300), {},
                               "[ /Title (Zo\xc3\xab \xe5\xa0\xb1\xe5\x91\x8a) /DOCINFO pdfmark");
    const QByteArray info = outputOf(u"pdfinfo"_s, {u"-enc"_s, u"UTF-8"_s, copy.path});
    QVERIFY2(info.contains("Zo\xc3\xab \xe5\xa0\xb1\xe5\x91\x8a\n"), info);
}

void TestPromises::scanKeepsItsStream()
{
    const Bench bench;
    const Copies copy = copyOf(bench, documents::scan());
    const QByteArray images = outputOf(u"pdfimages"_s, {u"-list"_s, copy.path});
    QVERIFY2(images.contains(" ccitt "), images);
    for (const QString &name : {u"in"_s, u"out"_s})
        outputOf(u"pdfimages"_s,
                 {u"-png"_s, name == "in"_L1 ? bench.in(u"a.pdf"_s) : copy.path, bench.home(name)});
    QCOMPARE(contentOf(bench.home(u"out-000.png"_s)), contentOf(bench.home(u"in-000.png"_s)));
    QVERIFY(!contentOf(bench.home(u"in-000.png"_s)).isEmpty());
}

void TestPromises::resampledScanIsGhostscripts()
{
    const Bench bench;
    QStringList line;
    write(bench.in(u"a.pdf"_s), documents::scan());
    for (const QString &word : lineOf(bench))
        line << (word == "-dMonoImageResolution=300"_L1 ? u"-dMonoImageResolution=100"_s : word);
    QCOMPARE(bench.run(line).status, 0);
    const QByteArray images = outputOf(u"pdfimages"_s, {u"-list"_s, bench.out(u"a.pdf"_s)});
    QVERIFY2(!images.contains(" 800 "), images);
}

void TestPromises::jbig2_data()
{
    QTest::addColumn<QStringList>("filter");
    QTest::addColumn<QStringList>("passwords");
    const QStringList asked = {u"-dAutoFilterMonoImages=false"_s,
                               u"-dMonoImageFilter=/JBIG2Encode"_s};
    QTest::newRow("asked for") << asked << QStringList();
    QTest::newRow("automatic") << QStringList{u"-dAutoFilterMonoImages=true"_s} << QStringList();
    QTest::newRow("encrypted") << asked << QStringList{u"-sOwnerPassword=o"_s};
}

void TestPromises::jbig2()
{
    QFETCH(QStringList, filter);
    QFETCH(QStringList, passwords);
    const Bench bench(documents::scan());
    QStringList line = lineOf(bench, passwords);
    line.removeAll(u"-dAutoFilterMonoImages=false"_s);
    const auto place = line.indexOf(u"-dMonoImageFilter=/FlateEncode"_s);
    line.removeAt(place);
    for (const QString &word : filter)
        line.insert(place, word);
    const Run run = bench.run(line);
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    const QString password = passwords.isEmpty() ? QString() : u"o"_s;
    const QStringList opened = {u"-upw"_s, password, u"-opw"_s, password};
    const QByteArray images =
        outputOf(u"pdfimages"_s, opened + QStringList{u"-list"_s, bench.out(u"a.pdf"_s)});
    QVERIFY2(images.contains(" jbig2 "), images);
    outputOf(u"pdfimages"_s, {u"-png"_s, bench.in(u"a.pdf"_s), bench.home(u"in"_s)});
    outputOf(u"pdfimages"_s,
             opened + QStringList{u"-png"_s, bench.out(u"a.pdf"_s), bench.home(u"out"_s)});
    QCOMPARE(contentOf(bench.home(u"out-000.png"_s)), contentOf(bench.home(u"in-000.png"_s)));
}

// One bit for each of several colours is no bilevel image; a stencil is one.
void TestPromises::whatIsBilevel_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<bool>("bilevel");
    QTest::newRow("gray") << QByteArray("/BitsPerComponent 1 /ColorSpace /DeviceGray") << 20000
                          << true;
    QTest::newRow("stencil") << QByteArray("/ImageMask true") << 20000 << true;
    QTest::newRow("RGB") << QByteArray("/BitsPerComponent 1 /ColorSpace /DeviceRGB") << 60000
                         << false;
    QTest::newRow("CMYK") << QByteArray("/BitsPerComponent 1 /ColorSpace /DeviceCMYK") << 80000
                          << false;
}

void TestPromises::whatIsBilevel()
{
    QFETCH(QByteArray, entries);
    QFETCH(int, bytes);
    QFETCH(bool, bilevel);
    QRandomGenerator random(1);
    QByteArray samples;
    for (int place = 0; place < bytes; ++place)
        samples += char(random.bounded(256) & random.bounded(256) & random.bounded(256) &
                        random.bounded(256));
    documents::Parts parts;
    parts.content = "q 144 0 0 144 0 0 cm /I Do Q";
    parts.resources = "/XObject << /I 6 0 R >>";
    parts.objects = {pdfStream("/Type /XObject /Subtype /Image /Width 400 /Height 400"
                               " /Filter [/ASCIIHexDecode /ASCIIHexDecode] " +
                                   entries,
                               samples.toHex().toHex())};
    const Bench bench(documents::withParts(parts));
    QStringList line = lineOf(bench);
    line.replaceInStrings(u"-dMonoImageFilter=/FlateEncode"_s, u"-dMonoImageFilter=/JBIG2Encode"_s);
    QCOMPARE(bench.run(line).status, 0);
    const QByteArray images = outputOf(u"pdfimages"_s, {u"-list"_s, bench.out(u"a.pdf"_s)});
    QCOMPARE(images.contains(" jbig2 "), bilevel);
    const auto drawn = [](const QString &path) {
        return outputOf(u"pdftoppm"_s, {u"-r"_s, u"60"_s, u"-png"_s, path});
    };
    QCOMPARE(drawn(bench.out(u"a.pdf"_s)), drawn(bench.in(u"a.pdf"_s)));
}

QTEST_GUILESS_MAIN(TestPromises)
#include "tst_engine_promises.moc"
