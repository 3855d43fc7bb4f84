// Images that go through the album and back, each of a kind that has been spoilt by somebody: held
// against their originals by two readers.
#include "imagedocuments.h"
#include "parsed.h"
#include "pictures.h"
#include "samples.h"
#include "shrinking.h"

#include <QTest>

using namespace imagedocuments;

class TestTakeImages : public QObject
{
    Q_OBJECT

private slots:
    void smaller_data();
    void smaller();
    void softMaskOverColourKey();
    void otherKeysStay();
    void shownOften();
    void excluded();
    void patternsGlyphsAppearances();
};

void TestTakeImages::smaller_data()
{
    QTest::addColumn<QByteArray>("image");
    using coding::Colours;
    const auto row = [](const char *name, const QByteArray &image) {
        QTest::newRow(name) << image;
    };
    row("RGB", flateImage("/DeviceRGB", 3));
    row("gray", flateImage("/DeviceGray", 1));
    row("CMYK", flateImage("/DeviceCMYK", 4));
    row("CalRGB", flateImage("[/CalRGB << /WhitePoint [.95 1 1.09] /Gamma [2 2 2] /Matrix [.41 .21 "
                             ".02 .36 .72 .12 .18 .07 .95] >>]",
                             3));
    row("CalGray", flateImage("[/CalGray << /WhitePoint [.95 1 1.09] /Gamma 2 >>]", 1));
    row("Separation", flateImage(separation, 1));
    row("negative", flateImage("/DeviceRGB", 3, 8, "/Decode [1 0 1 0 1 0]"));
    row("negative CMYK", flateImage("/DeviceCMYK", 4, 8, "/Decode [1 0 1 0 1 0 1 0]"));
    row("half the range", flateImage("/DeviceGray", 1, 8, "/Decode [.2 .6]"));
    row("RGB, 16 bits", flateImage("/DeviceRGB", 3, 16));
    row("RGB, 4 bits", flateImage("/DeviceRGB", 3, 4));
    row("gray, 4 bits", flateImage("/DeviceGray", 1, 4));
    row("gray, 2 bits", flateImage("/DeviceGray", 1, 2));
    row("indexed", flateImage(palette, 1));
    row("JPEG", jpegImage("/DeviceRGB", 3, Colours::Plain));
    row("JPEG, gray", jpegImage("/DeviceGray", 1, Colours::Plain));
    row("JPEG, RGB with marker", jpegImage("/DeviceRGB", 3, Colours::Adobe));
    row("JPEG, CMYK", jpegImage("/DeviceCMYK", 4, Colours::Plain));
    row("JPEG, CMYK with marker", jpegImage("/DeviceCMYK", 4, Colours::Adobe));
    row("JPEG, CMYK with marker, inverted",
        jpegImage("/DeviceCMYK", 4, Colours::Adobe, "/Decode [1 0 1 0 1 0 1 0]"));
    row("JPEG, YCCK", jpegImage("/DeviceCMYK", 4, Colours::AdobeYcc));
    row("JPEG in Flate",
        imageOf("/Filter [/FlateDecode /DCTDecode] /BitsPerComponent 8 /ColorSpace /DeviceRGB",
                coding::flate(coding::jpeg(coding::samples(usualEdge, usualEdge, 3), usualEdge,
                                           usualEdge, 3))));
}

// Shown with 288 dpi, where 150 are asked for.
void TestTakeImages::smaller()
{
    QFETCH(QByteArray, image);
    const QByteArray original = page({image});
    const auto result = shrinking::shrunk(original);
    QCOMPARE(result.albumPages, 1);
    QCOMPARE(result.taken.touched.size(), 1U);

    parsed::Document copy(result.document);
    parsed::Document before(original);
    QCOMPARE(entryOf(copy, "/Width").getIntValue(), 208);
    QCOMPARE(entryOf(copy, "/Height").getIntValue(), 208);
    QCOMPARE(entryOf(copy, "/BitsPerComponent").getIntValue(), 8);
    QVERIFY(entryOf(copy, "/Filter").isNameAndEquals("/DCTDecode"));
    QCOMPARE(entryOf(copy, "/Decode").unparse(), entryOf(before, "/Decode").unparse());
    if (!image.contains("/Indexed"))
        QCOMPARE(entryOf(copy, "/ColorSpace").unparse(), entryOf(before, "/ColorSpace").unparse());
    QCOMPARE_LT(pictures::difference(result.document, original), 8.);
}

// Readers go by the soft mask where there is a colour key as well.
void TestTakeImages::softMaskOverColourKey()
{
    const QByteArray original =
        page({flateImage("/DeviceRGB", 3, 8, "/Mask [0 255 0 255 0 255] /SMask 6 0 R"),
              flateImage("/DeviceGray", 1)});
    const auto result = shrinking::shrunk(original);
    QCOMPARE(result.taken.touched.size(), 2U);
    QCOMPARE_LT(pictures::difference(result.document, original), 8.);
}

void TestTakeImages::otherKeysStay()
{
    const QByteArray keys = "/OC 7 0 R /StructParent 3 /Interpolate true /Intent /Perceptual"
                            " /Mask 6 0 R /Name /Old /Metadata 8 0 R /Own (mine)";
    const QByteArray original =
        page({flateImage("/DeviceRGB", 3, 8, keys), bilevelImage("/ImageMask true"),
              "<< /Type /OCG /Name (Layer) >>", pdfStream({}, "<x/>")});
    const auto result = shrinking::shrunk(original);
    parsed::Document copy(result.document);
    parsed::Document before(original);
    for (const char *key : {"/Type", "/Subtype", "/StructParent", "/Interpolate", "/Intent",
                            "/Name", "/Own", "/ColorSpace", "/BitsPerComponent"})
        QCOMPARE(entryOf(copy, key).unparse(), entryOf(before, key).unparse());
    QVERIFY(entryOf(copy, "/OC").getKey("/Name").isString());
    QVERIFY(entryOf(copy, "/Metadata").isStream());
    QVERIFY(entryOf(copy, "/Mask").isStream());
    QCOMPARE(entryOf(copy, "/Width").getIntValue(), 208);
    QCOMPARE(entryOf(copy, "/Mask").getDict().getKey("/Width").getIntValue(), 500);
}

// It stays one object, with as many pixels as the largest of its places takes.
void TestTakeImages::shownOften()
{
    const QByteArray original = page(
        {flateImage("/DeviceRGB", 3)},
        "q 20 0 0 20 0 0 cm /I Do Q q 100 0 0 80 50 50 cm /I Do Q q 0 50 -50 0 150 0 cm /I Do Q");
    const auto result = shrinking::shrunk(original);
    QCOMPARE(result.albumPages, 1);
    QCOMPARE(result.taken.touched.size(), 3U);
    const auto &part = result.taken.touched[2];
    QCOMPARE(part.object, 5);
    QCOMPARE(part.page, 0);
    QCOMPARE(part.left, 100.);
    QCOMPARE(part.bottom, 0.);
    QCOMPARE(part.right, 150.);
    QCOMPARE(part.top, 50.);
    parsed::Document copy(result.document);
    QCOMPARE(entryOf(copy, "/Width").getIntValue(), 208);
    QCOMPARE(copy->getAllObjects().size(), parsed::Document(original)->getAllObjects().size());
}

void TestTakeImages::excluded()
{
    const QByteArray original =
        page({flateImage("/DeviceRGB", 3, 8, "/SMask 6 0 R"), flateImage("/DeviceGray", 1)});
    const auto result = shrinking::shrunk(original, {}, {5});
    QCOMPARE(result.taken.touched.size(), 1U);
    QCOMPARE(result.taken.touched[0].object, 6);
    QCOMPARE(shrinking::shrunk(original, {}, {5, 6}).taken.touched.size(), 0U);
}

// What is found there is as large as it is shown there.
void TestTakeImages::patternsGlyphsAppearances()
{
    const QByteArray own = "/Resources << /XObject << /I 7 0 R >> >>";
    const auto image = [](const char *name, const QByteArray &space, int components) {
        return flateImage(space, components, 8, QByteArray("/Name ") + name);
    };
    const QByteArray document = pdfOf(
        {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
         "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 4 0 R /Resources <<"
         " /Pattern << /P 5 0 R >> /ExtGState << /G << /SMask << /S /Luminosity /G 6 0 R >> >> >>"
         " /Font << /T 12 0 R >> >> /Annots [10 0 R] >>",
         pdfStream({}, "/Pattern cs /P scn 0 0 200 100 re f BT /T 50 Tf 1 0 0 1 10 140 Tm (a) Tj ET"
                       " /G gs 0 0 1 rg 100 100 100 100 re f"),
         pdfStream("/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 50 50]"
                   " /XStep 50 /YStep 50 " +
                       own,
                   "50 0 0 50 0 0 cm /I Do"),
         pdfStream(
             "/Type /XObject /Subtype /Form /BBox [0 0 200 200] /Group << /S /Transparency /CS"
             " /DeviceGray >> /Resources << /XObject << /I 8 0 R >> >>",
             "100 0 0 100 100 100 cm /I Do"),
         image("/Pattern", "/DeviceRGB", 3), image("/Mask", "/DeviceGray", 1),
         image("/Stamp", "/DeviceRGB", 3),
         "<< /Subtype /Stamp /F 4 /Rect [20 110 60 130] /AP << /N 11 0 R >> >>",
         pdfStream(
             "/Type /XObject /Subtype /Form /BBox [0 0 1 1] /Resources << /XObject << /I 9 0 R"
             " >> >>",
             "/I Do"),
         "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 1 1] /FontMatrix [1 0 0 1 0 0] /FirstChar "
         "97"
         " /LastChar 97 /Widths [1] /Encoding << /Differences [97 /a] >> /CharProcs << /a 13 0 R >>"
         " /Resources << /XObject << /I 14 0 R >> >> >>",
         pdfStream({}, "1 0 d0 1 0 0 1 0 0 cm /I Do"), image("/Glyph", "/DeviceRGB", 3)});
    const auto result = shrinking::shrunk(document);
    parsed::Document copy(result.document);
    std::map<std::string, long long> widths;
    for (auto &object : copy->getAllObjects()) {
        if (object.isStream() && object.getDict().hasKey("/Name"))
            widths[object.getDict().getKey("/Name").getName()] =
                object.getDict().getKey("/Width").getIntValue();
    }
    const std::map<std::string, long long> expected = {
        {"/Pattern", 104}, {"/Mask", 208}, {"/Stamp", 83}, {"/Glyph", 104}};
    QVERIFY(widths == expected);
    QCOMPARE_LT(pictures::difference(result.document, document), 12.);
}

QTEST_GUILESS_MAIN(TestTakeImages)
#include "tst_takeimages.moc"
