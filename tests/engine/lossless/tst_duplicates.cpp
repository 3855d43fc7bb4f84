// What is there twice becomes one, unless it has an identity of its own.
#include "documents.h"
#include "parsed.h"
#include "samples.h"

#include "engine/lossless/duplicates.h"

#include <QTest>

using Object = QPDFObjectHandle;

class TestDuplicates : public QObject
{
    Q_OBJECT

private slots:
    void equal_data();
    void equal();
    void different_data();
    void different();
    void identities_data();
    void identities();
    void masksOfImages();
    void layersOfImages();
    void pageThatIsThereTwice();
    void leaves();
    void sharedWithAnAppearance();
    void insideAnAppearance();
};

namespace {

QByteArray image(const QByteArray &entries = {}, const QByteArray &samples = "abcd")
{
    return pdfStream("/Type /XObject /Subtype /Image /Width 2 /Height 2 /BitsPerComponent 8"
                     " /ColorSpace /DeviceGray " +
                         entries,
                     samples);
}

QByteArray form(const QByteArray &entries = {})
{
    return pdfStream("/Type /XObject /Subtype /Form /BBox [0 0 9 9] " + entries, "0 0 9 9 re f");
}

// One page with these resources; objects are numbered from 6.
QByteArray page(const QByteArray &resources, const QList<QByteArray> &objects,
                const QByteArray &entries = {}, const QByteArray &catalogue = {})
{
    documents::Parts parts;
    parts.resources = resources;
    parts.objects = objects;
    parts.page = entries;
    parts.catalogue = catalogue;
    return documents::withParts(parts);
}

// What lies below an object: "/Resources/XObject/A", items of arrays as "/1".
Object below(Object object, const QByteArray &path)
{
    for (const QByteArray &step : path.mid(1).split('/')) {
        if (object.isStream())
            object = object.getDict();
        object = object.isArray() ? object.getArrayItem(step.toInt())
                                  : object.getKey("/" + step.toStdString());
    }
    return object;
}

bool areOne(QPDF &document, const QByteArray &path, const QByteArray &other)
{
    const Object first = below(document.getRoot(), path);
    const Object second = below(document.getRoot(), other);
    return Object(first).isIndirect() && Object(first).getObjGen() == Object(second).getObjGen();
}

constexpr auto inPage = "/Pages/Kids/0";

bool areOneInPage(QPDF &document, const QByteArray &path, const QByteArray &other)
{
    return areOne(document, inPage + path, inPage + other);
}

void merge(QPDF &document)
{
    engine::mergeEqualParts(document, {});
}

} // namespace

void TestDuplicates::equal_data()
{
    QTest::addColumn<QByteArray>("category");
    QTest::addColumn<QByteArray>("object");
    const auto row = [](const char *name, const char *category, const QByteArray &object) {
        QTest::newRow(name) << QByteArray(category) << object;
    };
    row("image", "XObject", image());
    row("form", "XObject", form());
    row("colour space", "ColorSpace", "[/CalGray << /WhitePoint [0.9505 1 1.089] >>]");
    row("graphics state", "ExtGState", "<< /Type /ExtGState /CA 0.5 >>");
    row("shading", "Shading",
        "<< /ShadingType 2 /ColorSpace /DeviceGray /Coords [0 0 1 1] /Function"
        " << /FunctionType 2 /N 1 /Domain [0 1] >> >>");
    row("pattern", "Pattern",
        pdfStream("/PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 1 1] /XStep 1 /YStep 1"
                  " /Resources << >>",
                  "0 0 1 1 re f"));
    row("font", "Font", "<< /Type /Font /Subtype /Type1 /BaseFont /Courier >>");
}

void TestDuplicates::equal()
{
    QFETCH(QByteArray, category);
    QFETCH(QByteArray, object);
    // The page has a category for its own font already.
    const QByteArray names = "<< /A 6 0 R /B 7 0 R >>";
    parsed::Document document(
        category == "Font"
            ? page({}, {object, object}).replace("/F 5 0 R", "/F 5 0 R /A 6 0 R /B 7 0 R")
            : page("/" + category + names, {object, object}));
    merge(document);
    const QByteArray path = "/Resources/" + category;
    QVERIFY(areOneInPage(document, path + "/A", path + "/B"));
}

void TestDuplicates::different_data()
{
    QTest::addColumn<QByteArray>("one");
    QTest::addColumn<QByteArray>("other");
    QTest::newRow("samples") << image() << image({}, "abce");
    QTest::newRow("entries") << image() << image("/Interpolate true");
    QTest::newRow("structure") << image("/StructParent 1") << image("/StructParent 1");
    QTest::newRow("marked contents") << form("/StructParents 1") << form("/StructParents 1");
    QTest::newRow("layers") << image("/OC 8 0 R") << image("/OC 8 0 R");
}

void TestDuplicates::different()
{
    QFETCH(QByteArray, one);
    QFETCH(QByteArray, other);
    parsed::Document document(
        page("/XObject << /A 6 0 R /B 7 0 R >>", {one, other, "<< /Type /OCG /Name (layer) >>"}));
    merge(document);
    QVERIFY(!areOneInPage(document, "/Resources/XObject/A", "/Resources/XObject/B"));
}

void TestDuplicates::identities_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QByteArray>("pageEntries");
    QTest::addColumn<QByteArray>("catalogue");
    QTest::addColumn<QByteArray>("one");
    QTest::addColumn<QByteArray>("other");
    const auto row = [](const char *name, const QByteArray &object, const char *pageEntries,
                        const char *catalogue, const QByteArray &one, const QByteArray &other) {
        QTest::newRow(name) << object << QByteArray(pageEntries) << QByteArray(catalogue) << one
                            << other;
    };
    row("layers", "<< /Type /OCG /Name (layer) >>", "",
        "/OCProperties << /OCGs [6 0 R 7 0 R] /D << >> >>", "/OCProperties/OCGs/0",
        "/OCProperties/OCGs/1");
    row("fields", "<< /FT /Tx /Subtype /Widget /Rect [0 0 9 9] /T (name) >>", "",
        "/AcroForm << /Fields [6 0 R 7 0 R] >>", "/AcroForm/Fields/0", "/AcroForm/Fields/1");
    row("annotations", "<< /Type /Annot /Subtype /Square /Rect [0 0 9 9] >>",
        "/Annots [6 0 R 7 0 R]", "", inPage + QByteArray("/Annots/0"),
        inPage + QByteArray("/Annots/1"));
    row("structure elements", "<< /Type /StructElem /S /P >>", "",
        "/StructTreeRoot << /Type /StructTreeRoot /K [6 0 R 7 0 R] >>", "/StructTreeRoot/K/0",
        "/StructTreeRoot/K/1");
    row("file specifications", "<< /Type /Filespec /F (a) >>", "",
        "/Names << /EmbeddedFiles << /Names [(a) 6 0 R (b) 7 0 R] >> >>",
        "/Names/EmbeddedFiles/Names/1", "/Names/EmbeddedFiles/Names/3");
    row("attached files", pdfStream("/Type /EmbeddedFile", "abc"), "",
        "/Names << /EmbeddedFiles << /Names [(a) << /EF << /F 6 0 R >> >> (b) << /EF << /F 7 0 R >>"
        " >>] >> >>",
        "/Names/EmbeddedFiles/Names/1/EF/F", "/Names/EmbeddedFiles/Names/3/EF/F");
    row("outline items", "<< /Title (chapter) /Dest [3 0 R /Fit] >>", "",
        "/Outlines << /First 6 0 R /Last 7 0 R >>", "/Outlines/First", "/Outlines/Last");
    row("layers of anybody's names", "<< /Type /OCG /Name (layer) >>", "",
        "/Dests << /Mask 6 0 R /SMask 7 0 R >>", "/Dests/Mask", "/Dests/SMask");
    row("appearances", form(),
        "/Annots [<< /Subtype /Square /Rect [0 0 9 9] /AP << /N 6 0 R >> >>"
        " << /Subtype /Square /Rect [9 9 18 18] /AP << /N << /On 7 0 R >> >> >>]",
        "", inPage + QByteArray("/Annots/0/AP/N"), inPage + QByteArray("/Annots/1/AP/N/On"));
}

void TestDuplicates::identities()
{
    QFETCH(QByteArray, object);
    QFETCH(QByteArray, pageEntries);
    QFETCH(QByteArray, catalogue);
    QFETCH(QByteArray, one);
    QFETCH(QByteArray, other);
    parsed::Document document(page({}, {object, object}, pageEntries, catalogue));
    merge(document);
    QVERIFY(!below(document->getRoot(), one).isNull());
    QVERIFY(!below(document->getRoot(), other).isNull());
    QVERIFY(!areOne(document, one, other));
}

void TestDuplicates::masksOfImages()
{
    parsed::Document document(
        page("/XObject << /A 6 0 R /B 7 0 R /C 8 0 R >>",
             {image("/SMask 9 0 R"), image("/SMask 10 0 R"), image("/SMask 11 0 R"),
              image({}, "soft"), image({}, "hard"), image({}, "soft")}));
    merge(document);
    QVERIFY(areOneInPage(document, "/Resources/XObject/A", "/Resources/XObject/C"));
    QVERIFY(!areOneInPage(document, "/Resources/XObject/A", "/Resources/XObject/B"));
    QVERIFY(!areOneInPage(document, "/Resources/XObject/A/SMask", "/Resources/XObject/B/SMask"));
}

// Two forms that are equal but for the layer, with an image each: the image is one, under both.
void TestDuplicates::layersOfImages()
{
    parsed::Document document(
        page("/XObject << /A 6 0 R /B 7 0 R >>",
             {form("/OC 10 0 R /Resources << /XObject << /I 8 0 R >> >>"),
              form("/OC 11 0 R /Resources << /XObject << /I 9 0 R >> >>"), image(), image(),
              "<< /Type /OCG /Name (layer) >>", "<< /Type /OCG /Name (layer) >>"},
             {}, "/OCProperties << /OCGs [10 0 R 11 0 R] /D << /OFF [11 0 R] >> >>"));
    merge(document);
    const QByteArray forms = "/Resources/XObject";
    QVERIFY(!areOneInPage(document, forms + "/A", forms + "/B"));
    QVERIFY(
        areOneInPage(document, forms + "/A/Resources/XObject/I", forms + "/B/Resources/XObject/I"));
    QVERIFY(!areOneInPage(document, forms + "/A/OC", forms + "/B/OC"));
    QVERIFY(!areOne(document, "/OCProperties/OCGs/0", "/OCProperties/OCGs/1"));
}

void TestDuplicates::pageThatIsThereTwice()
{
    const QByteArray twice = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Resources ";
    parsed::Document document(pdfOf(
        {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 2 /Kids [3 0 R 4 0 R] >>",
         twice + "7 0 R /Contents 5 0 R >>", twice + "8 0 R /Contents [6 0 R] >>",
         pdfStream({}, "0 0 9 9 re f"), pdfStream({}, "0 0 9 9 re f"),
         "<< /ExtGState << /G << /CA 1 >> >> >>", "<< /ExtGState << /G << /CA 1 >> >> >>"}));
    merge(document);
    QCOMPARE(document->getAllPages().size(), 2U);
    QVERIFY(!areOne(document, "/Pages/Kids/0", "/Pages/Kids/1"));
    QVERIFY(areOne(document, "/Pages/Kids/0/Contents", "/Pages/Kids/1/Contents/0"));
    QVERIFY(areOne(document, "/Pages/Kids/0/Resources", "/Pages/Kids/1/Resources"));
}

// From the profile up to the image that is drawn with it.
void TestDuplicates::leaves()
{
    QList<QByteArray> objects;
    for (int first : {6, 9}) {
        objects += pdfStream("/Subtype /Image /Width 2 /Height 2 /BitsPerComponent 8 /ColorSpace " +
                                 QByteArray::number(first + 1) + " 0 R",
                             "abcd");
        objects += "[/ICCBased " + QByteArray::number(first + 2) + " 0 R]";
        objects += pdfStream("/N 1 /Alternate /DeviceGray", "a profile");
    }
    parsed::Document document(page("/XObject << /A 6 0 R /B 9 0 R >>", objects));
    merge(document);
    QVERIFY(areOneInPage(document, "/Resources/XObject/A", "/Resources/XObject/B"));
}

// A viewer that draws the appearance anew would draw the page anew as well.
void TestDuplicates::sharedWithAnAppearance()
{
    parsed::Document document(
        page("/XObject << /A 6 0 R /B 8 0 R >>", {form(), form(), form()},
             "/Annots [<< /Subtype /Stamp /Rect [0 0 9 9] /AP << /N 7 0 R >> >>]"));
    merge(document);
    QVERIFY(areOneInPage(document, "/Resources/XObject/A", "/Resources/XObject/B"));
    QVERIFY(!areOneInPage(document, "/Resources/XObject/A", "/Annots/0/AP/N"));
}

void TestDuplicates::insideAnAppearance()
{
    const QByteArray font = "<< /Type /Font /Subtype /Type1 /BaseFont /Courier >>";
    const QByteArray annotation = "<< /Subtype /Stamp /Rect [0 0 9 9] /AP << /N ";
    parsed::Document document(
        page({},
             {form("/Resources << /XObject << /L 8 0 R >> /Font << /F 10 0 R >> >>"),
              form("/Resources << /XObject << /L 9 0 R >> /Font << /F 11 0 R >> >>"), form(),
              form(), font, font},
             "/Annots [" + annotation + "6 0 R >> >> " + annotation + "7 0 R >> >>]"));
    merge(document);
    const QByteArray one = "/Annots/0/AP/N/Resources";
    const QByteArray other = "/Annots/1/AP/N/Resources";
    QVERIFY(!areOneInPage(document, one + "/XObject/L", other + "/XObject/L"));
    QVERIFY(areOneInPage(document, one + "/Font/F", other + "/Font/F"));
}

QTEST_GUILESS_MAIN(TestDuplicates)
#include "tst_duplicates.moc"
