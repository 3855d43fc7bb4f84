// What a copy lacks of its original, and gets back, on made-up originals and copies.
#include "documents.h"
#include "parsed.h"
#include "samples.h"

#include "engine/pdf/description.h"
#include "engine/pdfa/links.h"
#include "engine/pdfa/losses.h"
#include "engine/pdfa/texts.h"
#include "engine/pdfa/viewing.h"

#include <QTest>
#include <qpdf/QPDFPageDocumentHelper.hh>

using namespace parsed;

namespace {

QByteArray described(const QByteArray &information)
{
    return pdfOf({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
                  "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>", information})
        .replace("trailer << ", "trailer << /Info 4 0 R ");
}

QByteArray commented(const QByteArray &subtype)
{
    return documents::links({}, {}, "<< /Type /Annot /Rect [0 0 9 9] /Subtype " + subtype + " >>");
}

} // namespace

class TestFidelity : public QObject
{
    Q_OBJECT

private slots:
    void losses_data();
    void losses();
    void strange_data();
    void strange();
    void misleadingLinks_data();
    void misleadingLinks();
    void linksComeBack();
    void linksKeepTheirLooks();
    void linksOfAMovedPageDont();
    void viewing_data();
    void viewing();
    void lostText_data();
    void lostText();
    void opensWhereTheOriginalDoes_data();
    void opensWhereTheOriginalDoes();
    void descriptionOfTheCopy();
    void ownEntriesAndProducer();
};

void TestFidelity::losses_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<QByteArray>("loss");
    QTest::newRow("nothing") << with({}) << QByteArray();
    QTest::newRow("form") << documents::form() << QByteArray("form fields");
    QTest::newRow("fields that lie nowhere")
        << with({"<< /FT /Tx /T (name) >>"}, "/AcroForm << /Fields [6 0 R] >>")
        << QByteArray("form");
    QTest::newRow("form without fields")
        << with({pdfStream({}, "<xdp/>")}, "/AcroForm << /XFA 6 0 R /Fields [] >>")
        << QByteArray("form");
    QTest::newRow("links") << documents::links() << QByteArray("links");
    for (const char *subtype : {"/Caret", "/Redact", "/Polygon", "/Unheard"})
        QTest::newRow(subtype) << commented(subtype) << QByteArray("comments");
    QTest::newRow("a comment's window") << commented("/Popup") << QByteArray();
    QTest::newRow("reply") << with({"<< /IRT 4 0 R >>"}, "/Six 6 0 R") << QByteArray("replies");
    const QList<QByteArray> outline = {
        "<< /Type /Outlines /First 7 0 R /Last 7 0 R /Count 1 >>",
        "<< /Title (One) /Parent 6 0 R /First 8 0 R /Last 8 0 R /Count 1 >>",
        "<< /Title (Below) /Parent 7 0 R >>"};
    QTest::newRow("outline") << with(outline, "/Outlines 6 0 R") << QByteArray("outline entries");
    QTest::newRow("hidden layer") << with({"<< /Type /OCG /Name (Plan) >>"},
                                          "/OCProperties << /OCGs [6 0 R] /D << /OFF [6 0 R] >> >>")
                                  << QByteArray("hidden layers");
    QTest::newRow("layers off unless on")
        << with({"<< /Type /OCG >>", "<< /Type /OCG >>"},
                "/OCProperties << /OCGs [6 0 R 7 0 R] /D << /BaseState /OFF /ON [6 0 R] >> >>")
        << QByteArray("hidden layers");
    QTest::newRow("layers that are on")
        << with({"<< /Type /OCG >>"},
                "/OCProperties << /OCGs [6 0 R] /D << /BaseState /OFF /ON [6 0 R 6 0 R] >> >>")
        << QByteArray();
    const QList<QByteArray> file = {"<< /Type /Filespec /F (a.csv) /EF << /F 7 0 R >> >>",
                                    pdfStream({}, "a;b")};
    QTest::newRow("attachment") << with(file,
                                        "/Names << /EmbeddedFiles << /Names [(a.csv) 6 0 R] >> >>")
                                << QByteArray("attachments");
    QTest::newRow("file of the document") << with(file, "/AF [6 0 R]") << QByteArray("attachments");
}

// An outline keeps its first entry in the copy; of the others nothing is left.
void TestFidelity::losses()
{
    QFETCH(QByteArray, original);
    QFETCH(QByteArray, loss);
    Document before(original);
    Document after(
        with({"<< /First 7 0 R /Last 7 0 R >>", "<< /Title (One) >>"}, "/Outlines 6 0 R"));
    QCOMPARE(QByteArray::fromStdString(engine::lossOf(before, after)), loss);
    Document again(original);
    QCOMPARE(QByteArray::fromStdString(engine::lossOf(before, again)), QByteArray());
}

void TestFidelity::strange_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("nothing") << QByteArray("<< /SMask 7 0 R >>") << QByteArray();
    QTest::newRow("ordinary form") << QByteArray("<< /NeedsRendering false >>") << QByteArray();
    QTest::newRow("matte") << pdfStream("/Matte [0 0 0]", "x")
                           << QByteArray("colours mixed with a mask");
    QTest::newRow("layers") << QByteArray("[<< /Type /OCMD /VE [/Not 7 0 R] >>]")
                            << QByteArray("conditions on layers");
    QTest::newRow("form") << QByteArray("<< /NeedsRendering true >>")
                          << QByteArray("a form that only a program can draw");
}

void TestFidelity::strange()
{
    QFETCH(QByteArray, object);
    QFETCH(QByteArray, name);
    Document document(with({object}, "/Six 6 0 R"));
    QCOMPARE(QByteArray::fromStdString(engine::unsupportedFeature(document)), name);
}

void TestFidelity::misleadingLinks_data()
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

void TestFidelity::misleadingLinks()
{
    QFETCH(QByteArray, box);
    QFETCH(QByteArray, target);
    QFETCH(bool, misleads);
    const QByteArray link = "<< /Type /Annot /Subtype /Link /Rect [0 0 9 9] ";
    Document original(documents::links(box, {}, link + target + " >>"));
    Document copy(documents::links("/MediaBox [0 0 200 200]", {}, {}));
    QCOMPARE(engine::misleadsLinks(copy, original), misleads);
}

void TestFidelity::linksComeBack()
{
    Document original(documents::links());
    Document copy(documents::links("/MediaBox [0 0 200 200]", {},
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

// And nothing that leads back into the original.
void TestFidelity::linksKeepTheirLooks()
{
    const QByteArray looks = "/BS << /W 2 >> /Border [ 1 1 1 ] /C [ 1 0 0 ] /Contents (here) /F 8 "
                             "/H /P /QuadPoints [ 0 0 9 0 9 9 0 9 ] /Rect [ 0 0 9 9 ]";
    Document original(documents::links("/MediaBox [0 0 200 200]", {},
                                       "<< /Type /Annot /Subtype /Link /P 3 0 R /StructParent 1 " +
                                           looks + " >>"));
    Document copy(documents::links("/MediaBox [0 0 200 200]", {}, {}));
    engine::restoreLinks(copy, original, false);
    auto link = QPDFPageDocumentHelper(copy).getAllPages().front().getAnnotations("/Link").front();
    const QByteArray expected = "<< " + looks + " /Subtype /Link /Type /Annot >>";
    QCOMPARE(QByteArray::fromStdString(link.getObjectHandle().unparseResolved()), expected);
}

void TestFidelity::linksOfAMovedPageDont()
{
    Document original(documents::links("/MediaBox [50 50 250 250]"));
    Document copy(documents::links("/MediaBox [0 0 200 200]", {}, {}));
    engine::restoreLinks(copy, original, false);
    QCOMPARE(engine::linksOf(copy), 0U);
}

void TestFidelity::viewing_data()
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

void TestFidelity::viewing()
{
    QFETCH(QByteArray, entry);
    QFETCH(bool, stays);
    Document original(with({}, entry));
    Document copy(with({}));
    engine::restoreViewing(copy, original);
    const std::string key = entry.left(entry.indexOf(' ')).toStdString();
    QVERIFY(original->getRoot().hasKey(key));
    QCOMPARE(copy->getRoot().hasKey(key), stays);
    if (stays)
        QCOMPARE(copy->getRoot().getKey(key).unparse(), original->getRoot().getKey(key).unparse());
}

void TestFidelity::lostText_data()
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

void TestFidelity::lostText()
{
    QFETCH(QByteArray, original);
    QFETCH(bool, hasText);
    Document before(original);
    Document blank(showing({}, {formOf({})}));
    QCOMPARE(engine::losesText(before, blank), hasText);
    Document same(original);
    QVERIFY(!engine::losesText(before, same));
}

// What both have is the copy's, and what only one has stays.
void TestFidelity::descriptionOfTheCopy()
{
    Document document(described("<< /Title (Old) /Company (Parish) /Odd 2 0 R >>"));
    Document copy(described("<< /Title (New) /Author (Zo\303\253) >>"));
    engine::takeDescription(document, copy);
    auto information = document->getTrailer().getKey("/Info");
    QCOMPARE(information.getKey("/Title").getUTF8Value(), std::string("New"));
    QCOMPARE(information.getKey("/Author").getUTF8Value(), std::string("Zo\u00eb"));
    QCOMPARE(information.getKey("/Company").getUTF8Value(), std::string("Parish"));
    QVERIFY(!information.hasKey("/Odd"));
    QVERIFY(!document->getRoot().hasKey("/Metadata"));
}

void TestFidelity::ownEntriesAndProducer()
{
    Document original(described("<< /Title (Old) /Company (Parish) /Odd 2 0 R /Trapped (x) >>"));
    Document copy(described("<< /Producer (Engine) /Region (North) >>"));
    engine::restoreOwnEntries(copy, original);
    auto information = copy->getTrailer().getKey("/Info");
    QCOMPARE(information.getKey("/Company").getUTF8Value(), std::string("Parish"));
    QCOMPARE(information.getKey("/Region").getUTF8Value(), std::string("North"));
    for (const char *key : {"/Title", "/Odd", "/Trapped"})
        QVERIFY2(!information.hasKey(key), key);

    engine::markProducer(copy, {{"/Title", "New"}});
    QCOMPARE(information.getKey("/Producer").getUTF8Value(), std::string("Engine"));
    engine::markProducer(copy, {{"/Producer", "Parish office"}});
    QCOMPARE(information.getKey("/Producer").getUTF8Value(), std::string("Parish office"));
}

void TestFidelity::opensWhereTheOriginalDoes_data()
{
    QTest::addColumn<QByteArray>("opening");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray place = "[ 4 0 R /XYZ 60 200 0 ]";
    QTest::newRow("place") << place << place;
    QTest::newRow("action") << "<< /S /GoTo /D " + place + " >>" << place;
    QTest::newRow("name") << QByteArray("/end") << place;
    QTest::newRow("script") << QByteArray("<< /S /JavaScript /JS (app.beep\\(0\\)) >>")
                            << QByteArray("null");
    QTest::newRow("nowhere") << QByteArray("/nowhere") << QByteArray("null");
    QTest::newRow("page that is none") << QByteArray("[ 9 0 R /Fit ]") << QByteArray("null");
}

void TestFidelity::opensWhereTheOriginalDoes()
{
    QFETCH(QByteArray, opening);
    const QByteArray plain = documents::links();
    QByteArray other = documents::links({}, {}, {}, "/OpenAction " + opening);
    Document original(other);
    Document copy(plain);
    engine::restoreLinks(copy, original, false);
    auto found = copy->getRoot().getKey("/OpenAction");
    QTEST(QByteArray::fromStdString(found.unparse()), "expected");
}

QTEST_GUILESS_MAIN(TestFidelity)
#include "tst_engine_fidelity.moc"
