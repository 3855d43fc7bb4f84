// What corvgs makes out of PDF files, without running Ghostscript: originals and copies are made
// up.
#include "documents.h"
#include "samples.h"

#include "engine/pdf/bilevelbitmap.h"
#include "engine/pdf/links.h"
#include "engine/pdf/losses.h"
#include "engine/pdf/pdfa.h"
#include "engine/pdf/texts.h"
#include "engine/pdf/viewing.h"
#include "engine/pdf/walk.h"

#include <QTest>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

class Parsed
{
public:
    explicit Parsed(const QByteArray &document)
        : m_bytes(document)
    {
        m_pdf.processMemoryFile("document", m_bytes.constData(), std::size_t(m_bytes.size()));
    }

    operator QPDF &() { return m_pdf; }
    QPDF *operator->() { return &m_pdf; }

private:
    QByteArray m_bytes; // outlives what reads it
    QPDF m_pdf;
};

QByteArray with(const QByteArray &content, const QByteArray &resources = {},
                const QList<QByteArray> &objects = {}, const QByteArray &catalogue = {},
                const QByteArray &page = {})
{
    documents::Parts parts;
    parts.content = content;
    parts.resources = resources;
    parts.page = page;
    parts.catalogue = catalogue;
    parts.objects = objects;
    return documents::withParts(parts);
}

// A page that shows this, and has no font. The catalogue leads to the sixth object as well.
QByteArray showing(const QByteArray &content, const QList<QByteArray> &forms = {})
{
    QList<QByteArray> objects = {"<< /Type /Catalog /Pages 2 0 R /Six 6 0 R >>",
                                 "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
                                 "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] "
                                 "/Contents 4 0 R /Resources << /XObject << /X 5 0 R >> >> >>",
                                 pdfStream({}, content)};
    return pdfOf(objects + forms);
}

QByteArray formOf(const QByteArray &content, const QByteArray &entries = "/Subtype /Form")
{
    return pdfStream("/Type /XObject " + entries + " /BBox [0 0 9 9]", content);
}

} // namespace

class TestPdf : public QObject
{
    Q_OBJECT

private slots:
    void forbiddenInPdfa_data();
    void forbiddenInPdfa();
    void allowedInPdfa_data();
    void allowedInPdfa();
    void largeNumbers();
    void losses_data();
    void losses();
    void misleadingLinks_data();
    void misleadingLinks();
    void linksComeBack();
    void linksOfAMovedPageDont();
    void viewing_data();
    void viewing();
    void lostText_data();
    void lostText();
    void bilevel_data();
    void bilevel();
    void drawnOnce();
    void drawnFarDown();
    void reachable();
};

void TestPdf::forbiddenInPdfa_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QByteArray>("objection");
    const QByteArray transparency = "transparency";
    for (const char *state : {"/SMask << /S /Luminosity >>", "/BM /Multiply", "/ca 0.99", "/CA 0",
                              "/Group << /S /Transparency >>"})
        QTest::newRow(state) << "<< " + QByteArray(state) + " >>" << transparency;
    QTest::newRow("soft mask of an image") << pdfStream("/SMask 4 0 R", "x") << transparency;
    const QByteArray font = "a font that is not embedded";
    QTest::newRow("font without descriptor")
        << QByteArray("<< /Type /Font /Subtype /TrueType >>") << font;
    QTest::newRow("descriptor without program")
        << QByteArray("<< /Type /Font /Subtype /Type1 /FontDescriptor << >> >>") << font;
    QTest::newRow("program that is none")
        << QByteArray("<< /Type /Font /Subtype /Type1 /FontDescriptor << /FontFile 5 >> >>")
        << font;
    const QByteArray action = "a forbidden action";
    for (const char *name : {"JavaScript", "Launch", "Sound", "Movie", "ResetForm", "ImportData",
                             "Rendition", "SetOCGState", "GoToE", "Hide", "Trans", "GoTo3DView",
                             "set-state", "no-op", "Named /N /Print"})
        QTest::newRow(name) << "<< /S /" + QByteArray(name) + " >>" << action;
    QTest::newRow("within an array") << QByteArray("[1 [<< /A << /S /Launch >> >>]]") << action;
    QTest::newRow("interpolated") << QByteArray("<< /Interpolate true >>")
                                  << QByteArray("an interpolated image");
    QTest::newRow("attached") << QByteArray("<< /EF << >> >>") << QByteArray("an attachment");
    QTest::newRow("attachments") << QByteArray("<< /EmbeddedFiles << >> >>")
                                 << QByteArray("an attachment");
    const QByteArray limits = "more than PDF 1.4 allows of something";
    QTest::newRow("real") << QByteArray("32767.5") << limits;
    QTest::newRow("negative real") << QByteArray("[-32767.5]") << limits;
    QTest::newRow("string") << '(' + QByteArray(65536, 'x') + ')' << limits;
    QTest::newRow("array") << '[' + QByteArray("0 ").repeated(8192) + ']' << limits;
    QTest::newRow("colorants") << "[/DeviceN [" + QByteArray("/C ").repeated(9) + "] /DeviceCMYK]"
                               << limits;
    const QByteArray numbers = "numbers that are too large";
    QTest::newRow("form") << formOf("32768.5 0 m") << numbers;
    QTest::newRow("negative, in a form") << formOf("-32768.5 0 m") << numbers;
}

void TestPdf::forbiddenInPdfa()
{
    QFETCH(QByteArray, object);
    QFETCH(QByteArray, objection);
    Parsed document(showing("0 0 m", {formOf({}), object}));
    QCOMPARE(QByteArray::fromStdString(engine::brokenPdfaRule(document)), objection);
}

void TestPdf::allowedInPdfa_data()
{
    QTest::addColumn<QByteArray>("object");
    for (const char *object :
         {"<< /SMask /None >>", "<< /BM /Normal >>", "<< /BM /Compatible >>", "<< /ca 1 /CA 1.0 >>",
          "<< /Group << /S /Other >> >>", "<< /Type /Font /Subtype /Type3 >>",
          "<< /Type /Font /Subtype /Type0 >>", "<< /S /Named /N /NextPage >>",
          "<< /S /Named /N /PrevPage >>", "<< /S /Named /N /FirstPage >>",
          "<< /S /Named /N /LastPage >>", "<< /S /URI >>", "<< /Interpolate false >>", "32767.0",
          "-32767.0"})
        QTest::newRow(object) << QByteArray(object);
    for (const char *key : {"FontFile", "FontFile2", "FontFile3"})
        QTest::newRow(key) << "<< /Type /Font /Subtype /Type1 /FontDescriptor << /" +
                                  QByteArray(key) + " 4 0 R >> >>";
    QTest::newRow("string") << '(' + QByteArray(65535, 'x') + ')';
    QTest::newRow("array") << '[' + QByteArray("0 ").repeated(8191) + ']';
    QTest::newRow("colorants") << "[/DeviceN [" + QByteArray("/C ").repeated(8) + "] /DeviceCMYK]";
    QTest::newRow("numbers in a form") << formOf("32767.0 -32767.0 m");
    QTest::newRow("numbers that draw nothing") << pdfStream({}, "32768.5 0 m");
}

void TestPdf::allowedInPdfa()
{
    QFETCH(QByteArray, object);
    Parsed document(showing("0 0 m", {formOf({}), object}));
    QCOMPARE(QByteArray::fromStdString(engine::brokenPdfaRule(document)), QByteArray());
}

void TestPdf::largeNumbers()
{
    const std::string objection = "numbers that are too large";
    Parsed page(showing("0 32768.5 m"));
    QCOMPARE(engine::brokenPdfaRule(page), objection);
    const QByteArray font = "<< /Type /Font /Subtype /Type3 /CharProcs << /a 7 0 R >> >>";
    Parsed glyph(showing({}, {formOf({}), font, pdfStream({}, "0 32768.5 m")}));
    QCOMPARE(engine::brokenPdfaRule(glyph), objection);
}

void TestPdf::losses_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<QByteArray>("loss");
    QTest::newRow("nothing") << with({}) << QByteArray();
    QTest::newRow("form") << documents::form() << QByteArray("form fields");
    QTest::newRow("links") << documents::links() << QByteArray("links");
    const QList<QByteArray> outline = {
        "<< /Type /Outlines /First 7 0 R /Last 7 0 R /Count 1 >>",
        "<< /Title (One) /Parent 6 0 R /First 8 0 R /Last 8 0 R /Count 1 >>",
        "<< /Title (Below) /Parent 7 0 R >>"};
    QTest::newRow("outline") << with({}, {}, outline, "/Outlines 6 0 R")
                             << QByteArray("outline entries");
    QTest::newRow("hidden layer") << with({}, {}, {"<< /Type /OCG /Name (Plan) >>"},
                                          "/OCProperties << /OCGs [6 0 R] /D << /OFF [6 0 R] >> >>")
                                  << QByteArray("hidden layers");
    QTest::newRow("layers off unless on")
        << with({}, {}, {"<< /Type /OCG >>", "<< /Type /OCG >>"},
                "/OCProperties << /OCGs [6 0 R 7 0 R] /D << /BaseState /OFF /ON [6 0 R] >> >>")
        << QByteArray("hidden layers");
    QTest::newRow("layers that are on")
        << with({}, {}, {"<< /Type /OCG >>"},
                "/OCProperties << /OCGs [6 0 R] /D << /BaseState /OFF /ON [6 0 R 6 0 R] >> >>")
        << QByteArray();
    QTest::newRow("attachment") << with({}, {},
                                        {"<< /Type /Filespec /F (a.csv) /EF << /F 7 0 R >> >>",
                                         pdfStream({}, "a;b")},
                                        "/Names << /EmbeddedFiles << /Names [(a.csv) 6 0 R] >> >>")
                                << QByteArray("attachments");
}

// An outline keeps its first entry in the copy; of the others nothing is left.
void TestPdf::losses()
{
    QFETCH(QByteArray, original);
    QFETCH(QByteArray, loss);
    Parsed before(original);
    Parsed after(
        with({}, {}, {"<< /First 7 0 R /Last 7 0 R >>", "<< /Title (One) >>"}, "/Outlines 6 0 R"));
    QCOMPARE(QByteArray::fromStdString(engine::lossOf(before, after)), loss);
    Parsed again(original);
    QCOMPARE(QByteArray::fromStdString(engine::lossOf(before, again)), QByteArray());
}

void TestPdf::misleadingLinks_data()
{
    QTest::addColumn<QByteArray>("box"); // in the copy it is [0 0 200 200]
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<bool>("misleads");
    const QByteArray moved = "/MediaBox [50 50 250 250]";
    const QByteArray place = "/Dest [4 0 R /XYZ 60 200 0]";
    QTest::newRow("same place") << QByteArray("/MediaBox [0 0 200 200]") << place << false;
    QTest::newRow("rounded") << QByteArray("/MediaBox [0 0 200.004 199.996]") << place << false;
    for (const char *box :
         {"/MediaBox [50 50 250 250]", "/MediaBox [0 1 200 200]", "/MediaBox [0 0 201 200]",
          "/MediaBox [0 0 200 201]", "/MediaBox [0 0 200 200] /Rotate 90",
          "/MediaBox [0 0 200 200] /UserUnit 2"})
        QTest::newRow(box) << QByteArray(box) << place << true;
    QTest::newRow("place on a page that stays")
        << moved << QByteArray("/Dest [3 0 R /XYZ 60 200 0]") << true; // both pages have that box
    for (const char *target : {"/Dest /end", "/Dest [4 0 R /FitH 9]", "/Dest [4 0 R /XYZ null 9 0]",
                               "/Dest [4 0 R /XYZ 1 0 0]", "/Dest [4 0 R /FitR 0 0 0 9]",
                               "/A << /S /GoTo /D [4 0 R /XYZ 60 200 0] >>",
                               "/A << /S /GoTo /D << /D [4 0 R /XYZ 60 200 0] >> >>"})
        QTest::newRow(target) << moved << QByteArray(target) << true;
    for (const char *target :
         {"/Dest [4 0 R /Fit]", "/Dest [4 0 R]", "/Dest [4 0 R /XYZ null null 0]",
          "/Dest [4 0 R /XYZ 0 0 0]", "/Dest [9 0 R /XYZ 60 200 0]", "/Dest /nowhere", "/Dest 7",
          "/A << /S /GoToR /F (b.pdf) /D [0 /XYZ 60 200 0] >>", "/A << /S /URI /URI (x:) >>"})
        QTest::newRow(target) << moved << QByteArray(target) << false;
}

void TestPdf::misleadingLinks()
{
    QFETCH(QByteArray, box);
    QFETCH(QByteArray, target);
    QFETCH(bool, misleads);
    const QByteArray link = "<< /Type /Annot /Subtype /Link /Rect [0 0 9 9] ";
    Parsed original(documents::links(box, {}, link + target + " >>"));
    Parsed copy(documents::links("/MediaBox [0 0 200 200]", {}, {}));
    QCOMPARE(engine::misleadsLinks(copy, original), misleads);
}

void TestPdf::linksComeBack()
{
    Parsed original(documents::links());
    Parsed copy(documents::links("/MediaBox [0 0 200 200]", {},
                                 "<< /Type /Annot /Subtype /Text /Rect [0 0 9 9] >>"));
    engine::restoreLinks(copy, original, true);
    QCOMPARE(engine::linksOf(copy), 2U);
    auto page = QPDFPageDocumentHelper(copy).getAllPages().front();
    QCOMPARE(page.getAnnotations("/Text").size(), 1U);
    auto link = page.getAnnotations("/Link").front().getObjectHandle();
    QCOMPARE(link.getKey("/F").getIntValue(), 4);
    auto second = QPDFPageDocumentHelper(copy).getAllPages().back().getObjectHandle();
    QCOMPARE(link.getKey("/Dest").getArrayItem(0).getObjGen().getObj(),
             second.getObjGen().getObj());
}

void TestPdf::linksOfAMovedPageDont()
{
    Parsed original(documents::links("/MediaBox [50 50 250 250]"));
    Parsed copy(documents::links("/MediaBox [0 0 200 200]", {}, {}));
    engine::restoreLinks(copy, original, false);
    QCOMPARE(engine::linksOf(copy), 0U);
}

void TestPdf::viewing_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<bool>("stays");
    for (const char *entry : {"/Lang (de)", "/PageLayout /TwoColumnRight", "/PageMode /UseNone",
                              "/PageMode /UseOutlines", "/PageMode /UseThumbs",
                              "/PageMode /FullScreen", "/ViewerPreferences << /Direction /R2L >>"})
        QTest::newRow(entry) << QByteArray(entry) << true;
    for (const char *entry : {"/Lang 7", "/PageLayout 7", "/PageMode /UseOC",
                              "/PageMode /UseAttachments", "/ViewerPreferences []"})
        QTest::newRow(entry) << QByteArray(entry) << false;
}

void TestPdf::viewing()
{
    QFETCH(QByteArray, entry);
    QFETCH(bool, stays);
    Parsed original(with({}, {}, {}, entry));
    Parsed copy(with({}));
    engine::restoreViewing(copy, original);
    const std::string key = entry.left(entry.indexOf(' ')).toStdString();
    QVERIFY(original->getRoot().hasKey(key));
    QCOMPARE(copy->getRoot().hasKey(key), stays);
    if (stays)
        QCOMPARE(copy->getRoot().getKey(key).unparse(), original->getRoot().getKey(key).unparse());
}

void TestPdf::lostText_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<bool>("hasText");
    for (const char *content : {"(a) Tj", "(a) '", "0 0 (a) \"", "[9 (a)] TJ", "[() 9 [] (a)] TJ"})
        QTest::newRow(content) << showing(content, {formOf({})}) << true;
    for (const char *content : {"() Tj", "[9 ()] TJ", "[] TJ", "(a) Do", "7 Tj"})
        QTest::newRow(content) << showing(content, {formOf({})}) << false;
    const QByteArray holder = "/Subtype /Form /Resources << /XObject << /Y 6 0 R >> >>";
    QTest::newRow("form") << showing("/X Do", {formOf("(a) Tj")}) << true;
    QTest::newRow("form in a form")
        << showing("/X Do", {formOf("/Y Do", holder), formOf("(a) Tj")}) << true;
    QTest::newRow("no form") << showing("/X Do", {formOf("(a) Tj", "/Subtype /Image")}) << false;
    QTest::newRow("form that draws itself")
        << showing("/X Do",
                   {formOf("/X Do", "/Subtype /Form /Resources << /XObject << /X 5 0 R >> >>")})
        << false;
}

void TestPdf::lostText()
{
    QFETCH(QByteArray, original);
    QFETCH(bool, hasText);
    Parsed before(original);
    Parsed blank(showing({}, {formOf({})}));
    QCOMPARE(engine::losesText(before, blank), hasText);
    Parsed same(original);
    QVERIFY(!engine::losesText(before, same));
}

void TestPdf::bilevel_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<bool>("is");
    QTest::newRow("/ImageMask true") << QByteArray("/ImageMask true") << true;
    QTest::newRow("/ImageMask false") << QByteArray("/ImageMask false") << false;
    for (const char *space :
         {"/DeviceGray", "/CalGray", "[/DeviceGray]", "[/CalGray << >>]", "[/ICCBased 7 0 R]",
          "[/Indexed /DeviceRGB 1 <000000ffffff>]", "[/Separation /Black /DeviceGray 9 0 R]"})
        QTest::newRow(space) << "/BitsPerComponent 1 /ColorSpace " + QByteArray(space) << true;
    for (const char *space :
         {"/DeviceRGB", "/DeviceCMYK", "[/DeviceRGB]", "[]", "[/ICCBased 8 0 R]", "[/ICCBased 7]",
          "[/CalRGB << >>]", "[/DeviceN [/A /B] /DeviceRGB 9 0 R]", "null"})
        QTest::newRow(space) << "/BitsPerComponent 1 /ColorSpace " + QByteArray(space) << false;
    for (const char *bits : {"2", "8", "1.0", "/One"})
        QTest::newRow(bits) << "/ColorSpace /DeviceGray /BitsPerComponent " + QByteArray(bits)
                            << false;
    const QByteArray gray = "/ColorSpace /DeviceGray /BitsPerComponent 1 ";
    QTest::newRow("mask of colours") << gray + "/Mask [0 0]" << false;
    QTest::newRow("mask of its own") << gray + "/Mask 7 0 R" << true;
}

void TestPdf::bilevel()
{
    QFETCH(QByteArray, entries);
    QFETCH(bool, is);
    const QList<QByteArray> objects = {formOf({}), formOf({}, "/Subtype /Image " + entries),
                                       pdfStream("/N 1", {}), pdfStream("/N 3", {})};
    Parsed document(showing({}, objects));
    QCOMPARE(engine::isBilevelImage(document->getObject(6, 0)), is);
    QVERIFY(!engine::isBilevelImage(document->getObject(5, 0)));
    QVERIFY(!engine::isBilevelImage(document->getObject(3, 0)));
}

void TestPdf::drawnOnce()
{
    const QByteArray holder = "/Subtype /Form /Resources << /XObject << /Y 6 0 R /Z 5 0 R >> >>";
    Parsed document(showing({}, {formOf({}, holder), formOf({}, "/Subtype /Image")}));
    std::vector<int> numbers;
    for (auto object : engine::drawnObjects(document))
        numbers.push_back(object.getObjectID());
    QCOMPARE(numbers, std::vector<int>({5, 6}));
}

// Forms within forms without end are nobody's drawing.
void TestPdf::drawnFarDown()
{
    QList<QByteArray> forms;
    for (int number = 5; number < 505; ++number)
        forms << formOf({}, "/Subtype /Form /Resources << /XObject << /X " +
                                QByteArray::number(number + 1) + " 0 R >> >>");
    Parsed document(showing({}, forms));
    const auto count = engine::drawnObjects(document).size();
    QVERIFY2(count >= 28 && count < 500, std::to_string(count).c_str());
}

void TestPdf::reachable()
{
    Parsed document(
        with({}, {}, {"<< /Inner << /Deep [<< /Last true >>] >> >>", "(nobody's)"}, "/Six 6 0 R"));
    QCOMPARE(engine::reachableObjects(document).size(), 6U);
    int last = 0;
    for (auto dictionary : engine::reachableDictionaries(document))
        last += int(dictionary.hasKey("/Last"));
    QCOMPARE(last, 1);
}

QTEST_GUILESS_MAIN(TestPdf)
#include "tst_engine_pdf.moc"
