// Font programs lose the glyphs that nobody shows, and no reader shows anything else.
#include "bench.h"
#include "documents.h"
#include "fontdocuments.h"
#include "parsed.h"
#include "samples.h"

#include "engine/fontprograms/face.h"
#include "engine/fonts/shrinkfonts.h"
#include "engine/pdf/streams.h"

#include <QTemporaryDir>
#include <QTest>

#include <qpdf/QPDFWriter.hh>

using namespace Qt::StringLiterals;
using namespace fontdocuments;

namespace {

const engine::FontOptions subset = {.subset = true};

struct Shrunk
{
    QByteArray copy;
    engine::FontResult result;
};

Shrunk shrunk(const QByteArray &bytes, const engine::FontOptions &options = subset,
              const std::set<int> &excluded = {})
{
    parsed::Document document(bytes);
    engine::FontResult result = engine::shrinkFonts(document, options, excluded);
    QPDFWriter writer(document);
    writer.setOutputMemory();
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.setPreserveUnreferencedObjects(true); // numbers stay what they were
    writer.setStaticID(true);
    writer.write();
    const auto buffer = writer.getBufferSharedPointer();
    return {QByteArray(reinterpret_cast<const char *>(buffer->getBuffer()),
                       qsizetype(buffer->getSize())),
            std::move(result)};
}

// What the two readers make of the first page, at 150 dpi, and its text; of damaged content, too.
QByteArrayList seen(const QByteArray &bytes)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"a.pdf"_s);
    write(file, bytes);
    return {tools::run(u"pdftoppm"_s, {u"-r"_s, u"150"_s, file}).output,
            tools::run(u"mutool"_s, {u"draw"_s, u"-q"_s, u"-F"_s, u"ppm"_s, u"-r"_s, u"150"_s,
                                     u"-o"_s, u"-"_s, file})
                .output,
            tools::run(u"pdftotext"_s, {file, u"-"_s}).output};
}

bool hasBlack(const QByteArray &picture)
{
    return picture.contains(QByteArray(3, '\0'));
}

std::string programIn(const QByteArray &bytes)
{
    parsed::Document document(bytes);
    return engine::decodedBytesOf(document->getObjectByID(programObject, 0)).value_or("");
}

// The glyphs of the program that are not empty.
std::set<unsigned> glyphsIn(const QByteArray &bytes)
{
    const auto face = engine::Face::of(programIn(bytes));
    std::set<unsigned> glyphs;
    for (unsigned glyph = 0; face && glyph < face->count(); ++glyph) {
        if (!face->isBlank(glyph))
            glyphs.insert(glyph);
    }
    return glyphs;
}

const QByteArray trueType = "/Subtype /TrueType ";
const QByteArray type1 = "/Subtype /Type1 ";
const QByteArray identity = "/Encoding /Identity-H ";

Font simple(const QString &name, const QByteArray &entries = {})
{
    return {.program = program(name), .entries = trueType + entries};
}

Font compact(const QString &name, const QByteArray &subtype, const QByteArray &entries)
{
    return {.program = program(name),
            .key = "/FontFile3",
            .streamEntries = "/Subtype " + subtype,
            .entries = entries};
}

Font composite(Font font, const QByteArray &descendant, const QByteArray &entries = identity)
{
    font.entries = descendant;
    font.composite = entries;
    return font;
}

Rest pdfA1()
{
    return {.catalogue = "/Metadata 9 0 R",
            .objects = {pdfStream("/Type /Metadata /Subtype /XML",
                                  "<rdf:Description><pdfaid:part>1</pdfaid:part>"
                                  "<pdfaid:conformance>B</pdfaid:conformance></rdf:Description>")}};
}

// By number in makefonts.py; the first and the last are kept where numbers stay.
std::set<unsigned> keeping(std::set<unsigned> glyphs)
{
    glyphs.merge(std::set<unsigned>{0, 32});
    return glyphs;
}

} // namespace

class TestShrinkFonts : public QObject
{
    Q_OBJECT

private slots:
    void shownGlyphsStay_data();
    void shownGlyphsStay();
    void staysWhole_data();
    void staysWhole();
    void tablesThatNobodyReadsGo_data();
    void tablesThatNobodyReadsGo();
    void sharedProgramKeepsWhatAnyShows();
    void lastOfManyGlyphsStays();
    void tagIsTheSameEverywhere();
    void listsFit();
    void standardThatAsksForListsGetsThem();
    void excludedStays();
    void plainProgramsHaveNoFilter();
    void standardFontsAreLeftOut_data();
    void standardFontsAreLeftOut();
    void standardThatAsksForProgramsKeepsThem();
    void pagesAreNamed();
    void sameInputSameOutput();
};

// B is 3, C 4; A with its dots is 30, of A (2) and the dots (28).
void TestShrinkFonts::shownGlyphsStay_data()
{
    QTest::addColumn<QByteArray>("codes");
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<std::set<unsigned>>("glyphs");

    const auto row = [](const char *name, const QByteArray &codes, const Font &font,
                        const std::set<unsigned> &glyphs, const Rest &rest = {}) {
        QTest::newRow(name) << codes << showing(text(codes), font, rest) << glyphs;
    };
    const QByteArray win = "/Encoding /WinAnsiEncoding";
    const QByteArray mac = "/Encoding /MacRomanEncoding";
    const auto differences = [](const QByteArray &names) {
        return "/Encoding << /Differences [1 " + names + "] >>";
    };
    Font letters = simple(u"unicode.ttf"_s, win);
    letters.descriptor = "/Flags 32";
    row("cmap (3,1)", "4243", letters, keeping({3, 4}));
    row("cmap (3,1), symbolic", "4243", simple(u"unicode.ttf"_s), keeping({3, 4}));
    row("composite glyph", "C4", letters, keeping({2, 28, 30}));
    row("cmap (1,0)", "4243", simple(u"mac.ttf"_s), keeping({3, 4}));
    row("cmap (1,0), by names", "80", simple(u"mac.ttf"_s, mac), keeping({2, 28, 30}));
    Font others = simple(u"mac.ttf"_s, win);
    others.descriptor = letters.descriptor;
    row("cmap (1,0), by names of another encoding", "C4", others, keeping({2, 28, 30}));
    row("cmap (3,0)", "4243", simple(u"symbol.ttf"_s), keeping({3, 4}));
    row("all cmaps", "4243", simple(u"all-cmaps.ttf"_s), keeping({3, 4}));
    row("without OS/2", "4243", simple(u"without-os2.ttf"_s, win), keeping({3, 4}));
    row("names, cmap (3,1)", "0102", simple(u"unicode.ttf"_s, differences("/B /Adieresis")),
        keeping({2, 3, 28, 30}));
    row("names, post", "01", simple(u"names-only.ttf"_s, differences("/secret")), keeping({32}));
    row("names, uni", "01", simple(u"unicode.ttf"_s, differences("/uni0042")), keeping({3}));
    row("without cmap, by number", "00030004",
        composite(simple(u"without-cmap.ttf"_s), "/Subtype /CIDFontType2 /CIDToGIDMap /Identity"),
        keeping({3, 4}));
    row("Identity-H", "0003001E",
        composite(simple(u"unicode.ttf"_s), "/Subtype /CIDFontType2 /CIDToGIDMap /Identity"),
        keeping({2, 3, 28, 30}));
    row("Identity-V", "0003",
        composite(simple(u"unicode.ttf"_s), "/Subtype /CIDFontType2", "/Encoding /Identity-V"),
        keeping({3}));
    row("CIDToGIDMap", "00010002",
        composite(simple(u"unicode.ttf"_s), "/Subtype /CIDFontType2 /CIDToGIDMap 9 0 R"),
        keeping({4, 5}), {.objects = {pdfStream({}, QByteArray("\0\0\0\4\0\5", 6))}});
    row("CFF, built-in encoding", "4243", compact(u"named.cff"_s, "/Type1C", type1), {0, 1, 2});
    row("CFF, WinAnsi", "4243", compact(u"named.cff"_s, "/Type1C", type1 + win), {0, 1, 2});
    row("CFF, by name", "0102",
        compact(u"named.cff"_s, "/Type1C", type1 + differences("/secret /B")), {0, 1, 2});
    row("CFF, by CID", "0009000C",
        composite(compact(u"keyed.cff"_s, "/CIDFontType0C", {}), "/Subtype /CIDFontType0"),
        keeping({3, 4}));
    row("CFF with names, by number", "00030004",
        composite(compact(u"named.cff"_s, "/CIDFontType0C", {}), "/Subtype /CIDFontType0"),
        keeping({3, 4}));
    row("OpenType with CFF", "4243", compact(u"named.otf"_s, "/OpenType", type1 + win),
        keeping({3, 4}));
    row("OpenType with CFF, by CID", "0009",
        composite(compact(u"keyed.otf"_s, "/OpenType", {}), "/Subtype /CIDFontType0"),
        keeping({3, 9}));
    row("OpenType with glyf", "4243", compact(u"unicode.ttf"_s, "/OpenType", trueType + win),
        keeping({3, 4}));
}

void TestShrinkFonts::shownGlyphsStay()
{
    QFETCH(QByteArray, document);
    QFETCH(std::set<unsigned>, glyphs);
    const Shrunk made = shrunk(document);
    QCOMPARE(made.result.touched.size(), std::size_t(1));
    QCOMPARE(glyphsIn(made.copy), glyphs);
    const QByteArrayList before = seen(document);
    QVERIFY(hasBlack(before[0]) || hasBlack(before[1])); // they differ in what they make of some
    QCOMPARE(seen(made.copy), before);
}

void TestShrinkFonts::staysWhole_data()
{
    QTest::addColumn<QByteArray>("document");

    const QByteArray win = "/Encoding /WinAnsiEncoding";
    const Font letters = simple(u"unicode.ttf"_s, win);
    const Font numbers = composite(simple(u"unicode.ttf"_s), "/Subtype /CIDFontType2");
    const auto row = [](const char *name, const QByteArray &content, const Font &font,
                        const Rest &rest = {}) {
        QTest::newRow(name) << showing(content, font, rest);
    };
    const QByteArray b = text("42");
    const QByteArray form = pdfStream("/Type /XObject /Subtype /Form /BBox [0 0 9 9]"
                                      " /Resources << /Font << /F 5 0 R >> >>",
                                      text("43"));
    row("a name that says nothing", text("01"),
        simple(u"unicode.ttf"_s, "/Encoding << /Differences [1 /g23] >>"));
    row("an encoding that is not for letters", b,
        simple(u"unicode.ttf"_s, "/Encoding /MacExpertEncoding"));
    Font type1Program = simple(u"unicode.ttf"_s, win);
    type1Program.key = "/FontFile";
    row("what stands for Type 1", b, type1Program);
    row("half a code", text("000300"), numbers);
    row("a CMap of its own", text("0003"),
        composite(numbers, "/Subtype /CIDFontType2", "/Encoding /UniGB-UCS2-H"));
    row("a map that is none", text("0003"),
        composite(numbers, "/Subtype /CIDFontType2 /CIDToGIDMap /Other"));
    row("two fonts below one", text("0003"),
        composite(numbers, "/Subtype /CIDFontType2", identity + " /DescendantFonts [6 0 R 6 0 R]"));
    row("a content that is damaged", b + "BT /F 20 Tf (", letters);
    row("a font that is not there", b + "BT /G 20 Tf (B) Tj ET", letters);
    row("default resources of a form", b, letters,
        {.catalogue = "/AcroForm << /Fields [] /DR << /Font << /F 5 0 R >> >> >>"});
    row("a field's appearance", b, letters,
        {.page = "/Annots [9 0 R]",
         .objects = {"<< /Type /Annot /Subtype /Widget /FT /Tx /T (a) /Rect [0 0 9 9]"
                     " /AP << /N 10 0 R >> >>",
                     form}});
    row("free text", b, letters,
        {.page = "/Annots [9 0 R]",
         .objects = {"<< /Type /Annot /Subtype /FreeText /Rect [0 0 9 9] /DA (/F 9 Tf)"
                     " /AP << /N 10 0 R >> >>",
                     form}});
    row("a default appearance that calls it by name", b, letters,
        {.page = "/Annots [9 0 R]",
         .objects = {"<< /Type /Annot /Subtype /FreeText /Rect [0 0 9 9] /DA (0 g /F 9 Tf) >>"}});
    row("a program that something unknown uses", b, letters,
        {.catalogue = "/Other << /FontFile2 8 0 R >>"});
    QByteArray all;
    for (int glyph = 0; glyph < 33; ++glyph)
        all += "00" + QByteArray(1, char(glyph)).toHex();
    row("a program of which all is shown", text(all),
        composite(compact(u"named.cff"_s, "/CIDFontType0C", {}), "/Subtype /CIDFontType0"));
}

void TestShrinkFonts::staysWhole()
{
    QFETCH(QByteArray, document);
    const Shrunk made = shrunk(document);
    QVERIFY(made.result.touched.empty());
    QCOMPARE(programIn(made.copy), programIn(document));
}

void TestShrinkFonts::tablesThatNobodyReadsGo_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<engine::FontOptions>("options");
    QTest::addColumn<QList<QByteArray>>("tables");

    const QByteArray win = "/Encoding /WinAnsiEncoding";
    const Font font = simple(u"tables.ttf"_s, win);
    const QByteArray ofForm =
        showing(text("42"), font,
                {.catalogue = "/AcroForm << /Fields [] /DR << /Font << /F 5 0 R >> >> >>"});
    const QByteArray uncertain = showing(text("42") + "BT /F 20 Tf (", font);
    const QByteArray certain = showing(text("42"), font);
    QTest::newRow("fields may need layout") << ofForm << subset << QList<QByteArray>{"GSUB"};
    QTest::newRow("an uncertain use") << uncertain << subset << QList<QByteArray>{};
    QTest::newRow("a subset") << certain << subset << QList<QByteArray>{};
    QTest::newRow("no subsets wanted")
        << uncertain << engine::FontOptions() << QList<QByteArray>{"GSUB", "hdmx", "kern"};
}

void TestShrinkFonts::tablesThatNobodyReadsGo()
{
    QFETCH(QByteArray, document);
    QFETCH(engine::FontOptions, options);
    QFETCH(QList<QByteArray>, tables);
    const QByteArray copy = shrunk(document, options).copy;
    const auto face = engine::Face::of(programIn(copy));
    QVERIFY(face);
    QList<QByteArray> found;
    for (const char *tag : {"GSUB", "hdmx", "kern"}) {
        if (!face->table(tag).empty())
            found.append(tag);
    }
    QCOMPARE(found, tables);
    QCOMPARE(seen(copy), seen(document));
    for (const char *tag : {"cmap", "hmtx", "post"})
        QVERIFY(!face->table(tag).empty());
}

void TestShrinkFonts::sharedProgramKeepsWhatAnyShows()
{
    const QByteArray second =
        "<< /Type /Font /Subtype /TrueType /BaseFont /Triangles /FirstChar 68 /LastChar 69"
        " /Widths [700 700] /FontDescriptor 7 0 R /Encoding /WinAnsiEncoding >>";
    const QByteArray pattern =
        pdfStream("/PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 40 40] /XStep 40"
                  " /YStep 40 /Resources << /Font << /F 9 0 R >> >>",
                  "BT /F 20 Tf 5 5 Td (D) Tj ET");
    const QByteArray form = pdfStream("/Type /XObject /Subtype /Form /BBox [0 0 200 200]"
                                      " /Resources << /Font << /F 9 0 R >> >>",
                                      text("45"));
    const QByteArray document =
        showing(text("42") + "/X Do /Pattern cs /P scn 0 0 50 50 re f",
                simple(u"unicode.ttf"_s, "/Encoding /WinAnsiEncoding"),
                {.resources = "/XObject << /X 11 0 R >> /Pattern << /P 10 0 R >>",
                 .objects = {second, pattern, form}});
    const Shrunk made = shrunk(document);
    QCOMPARE(glyphsIn(made.copy), keeping({3, 5, 6}));
    QCOMPARE(seen(made.copy), seen(document));
}

void TestShrinkFonts::lastOfManyGlyphsStays()
{
    const QByteArray document =
        showing(text("0003FFFE"), composite(simple(u"many.ttf"_s), "/Subtype /CIDFontType2"));
    const Shrunk made = shrunk(document);
    const auto face = engine::Face::of(programIn(made.copy));
    QVERIFY(face);
    QCOMPARE(face->count(), 65535U);
    QCOMPARE(glyphsIn(made.copy), (std::set<unsigned>{0, 3}));
    QVERIFY(made.copy.size() * 2 < document.size());
    QCOMPARE(seen(made.copy), seen(document));
}

void TestShrinkFonts::tagIsTheSameEverywhere()
{
    const QByteArray document =
        showing(text("0003"), composite(simple(u"unicode.ttf"_s), "/Subtype /CIDFontType2"));
    const QByteArray copy = shrunk(document).copy;
    parsed::Document made(copy);
    const auto nameIn = [&](int object, const char *key) {
        return QString::fromStdString(made->getObjectByID(object, 0).getKey(key).getName());
    };
    const QString name = nameIn(fontObject, "/BaseFont");
    QVERIFY(QRegularExpression(u"^/[A-CE-Z]{6}\\+Triangles$"_s).match(name).hasMatch());
    QCOMPARE(nameIn(6, "/BaseFont"), name);
    QCOMPARE(nameIn(7, "/FontName"), name);

    // One that is made smaller again gets another.
    QByteArray more = document;
    more.replace("/Triangles", "/ABCDEF+Triangles");
    parsed::Document again(shrunk(more).copy);
    QCOMPARE(QString::fromStdString(again->getObjectByID(7, 0).getKey("/FontName").getName()),
             name);
}

void TestShrinkFonts::listsFit()
{
    Font keyed = composite(compact(u"keyed.cff"_s, "/CIDFontType0C", {}), "/Subtype /CIDFontType0");
    keyed.descriptor += " /CIDSet 9 0 R";
    const QByteArray all = pdfStream({}, QByteArray(13, '\xFF'));
    parsed::Document cids(shrunk(showing(text("0009"), keyed, {.objects = {all}})).copy);
    // Characters 0, 9 and the last, 96.
    QByteArray bits(13, '\0');
    bits[0] = char(0x80);
    bits[1] = 0x40;
    bits[12] = char(0x80);
    const auto set = cids->getObjectByID(7, 0).getKey("/CIDSet");
    QCOMPARE(QByteArray::fromStdString(engine::decodedBytesOf(set).value_or("")), bits);

    Font named = compact(u"named.cff"_s, "/Type1C", type1);
    named.descriptor += " /CharSet (/A/B/C/D)";
    parsed::Document names(shrunk(showing(text("4243"), named)).copy);
    QCOMPARE(names->getObjectByID(7, 0).getKey("/CharSet").getStringValue(), std::string("/B/C"));
}

void TestShrinkFonts::standardThatAsksForListsGetsThem()
{
    const Font font = composite(simple(u"unicode.ttf"_s), "/Subtype /CIDFontType2");
    const auto hasList = [&](const Rest &rest) {
        parsed::Document made(shrunk(showing(text("0003"), font, rest)).copy);
        return made->getObjectByID(7, 0).hasKey("/CIDSet");
    };
    QVERIFY(!hasList({}));
    QVERIFY(hasList(pdfA1()));
}

void TestShrinkFonts::excludedStays()
{
    const QByteArray document = showing(text("42"), simple(u"unicode.ttf"_s));
    QVERIFY(shrunk(document, subset, {programObject}).result.touched.empty());
    QVERIFY(!shrunk(document, subset, {programObject + 1}).result.touched.empty());
}

void TestShrinkFonts::plainProgramsHaveNoFilter()
{
    const QByteArray document = documents::rewritten(showing(text("42"), simple(u"unicode.ttf"_s)),
                                                     {u"--stream-data=compress"_s});
    for (const bool isSubset : {false, true}) {
        parsed::Document made(shrunk(document, {.subset = isSubset, .compress = false}).copy);
        auto stream = [&] {
            for (auto &object : made->getAllObjects()) {
                if (object.isDictionary() && object.hasKey("/FontFile2"))
                    return object.getKey("/FontFile2");
            }
            return QPDFObjectHandle::newNull();
        }();
        QVERIFY(stream.isStream());
        QVERIFY(!stream.getDict().hasKey("/Filter"));
        QVERIFY(engine::Face::of(engine::rawBytesOf(stream)));
    }
}

void TestShrinkFonts::standardFontsAreLeftOut_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<bool>("isLeftOut");

    const QByteArray win = "/Encoding /WinAnsiEncoding";
    const QByteArray differences = "/Encoding << /Differences [66 /B] >>";
    QTest::newRow("standard") << QByteArray("Helvetica") << type1 + win << true;
    QTest::newRow("subset") << QByteArray("ABCDEF+Times-Roman") << type1 + win << true;
    QTest::newRow("all letters named") << QByteArray("Symbol") << type1 + differences << true;
    QTest::newRow("another") << QByteArray("Triangles") << type1 + win << false;
    QTest::newRow("TrueType") << QByteArray("Helvetica") << trueType + win << false;
    QTest::newRow("encoding of its own") << QByteArray("Helvetica") << type1 << false;
    QTest::newRow("no letters") << QByteArray("ZapfDingbats") << type1 + win << false;
}

void TestShrinkFonts::standardFontsAreLeftOut()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, entries);
    QFETCH(bool, isLeftOut);
    QByteArray document = showing(text("42"), compact(u"named.cff"_s, "/Type1C", entries));
    document.replace("/Triangles", "/" + name);
    const Shrunk made = shrunk(document, {.leaveOutStandard14 = true});
    QCOMPARE(made.result.leftOut.size(), std::size_t(isLeftOut));
    QVERIFY(made.result.touched.empty());
    parsed::Document copy(made.copy);
    auto descriptor = copy->getObjectByID(7, 0);
    QCOMPARE(descriptor.hasKey("/FontFile3"), !isLeftOut);
    QCOMPARE(descriptor.getKey("/FontName").getName().find('+') == std::string::npos,
             isLeftOut || !name.contains('+'));
}

void TestShrinkFonts::standardThatAsksForProgramsKeepsThem()
{
    const Font font = compact(u"named.cff"_s, "/Type1C", type1 + "/Encoding /WinAnsiEncoding");
    QByteArray document = showing(text("42"), font, pdfA1());
    document.replace("/Triangles", "/Helvetica");
    QVERIFY(shrunk(document, {.leaveOutStandard14 = true}).result.leftOut.empty());
}

void TestShrinkFonts::pagesAreNamed()
{
    const QByteArray document = showing(text("42"), simple(u"unicode.ttf"_s),
                                        {.page = "/UserUnit 2 /CropBox [50 50 150 150]"});
    const auto touched = shrunk(document).result.touched;
    QCOMPARE(touched.size(), std::size_t(1));
    const engine::TouchedPart part = touched.front();
    QVERIFY(part.kind == engine::PartKind::Font);
    QCOMPARE(part.object, programObject);
    QCOMPARE(part.page, 0);
    QCOMPARE((QList<double>{part.left, part.bottom, part.right, part.top}),
             (QList<double>{100, 100, 300, 300}));
}

void TestShrinkFonts::sameInputSameOutput()
{
    const QByteArray document = showing(text("42"), simple(u"all-cmaps.ttf"_s));
    QCOMPARE(shrunk(document).copy, shrunk(document).copy);
}

QTEST_GUILESS_MAIN(TestShrinkFonts)
#include "tst_shrinkfonts.moc"
