// Images that go through the album and back, each of a kind that has been spoilt by somebody: held
// against their originals by two readers.
#include "coding.h"
#include "parsed.h"
#include "pictures.h"
#include "samples.h"
#include "shrinking.h"

#include "engine/bilevel/jbig2.h"
#include "engine/images/smallerimage.h"

#include <QTest>

using namespace Qt::StringLiterals;
using pictures::Reader;

namespace {

constexpr int usualEdge = 400; // 288 dpi on the page, 208 pixels at 150

// Object 5 is the image; others follow. The page has a coloured ground, so that masks are seen.
QByteArray page(const QList<QByteArray> &objects, const QByteArray &content = {})
{
    const QByteArray ground = "0.2 0.8 0.6 rg 0 0 200 200 re f 0.9 0.1 0.1 rg ";
    return pdfOf(
        QList<QByteArray>{
            "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
            "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents"
            " 4 0 R /Resources << /XObject << /I 5 0 R >> >> >>",
            pdfStream({}, ground + (content.isEmpty() ? "100 0 0 100 50 50 cm /I Do" : content))} +
        objects);
}

QByteArray imageOf(const QByteArray &entries, const QByteArray &bytes, int pixels = usualEdge)
{
    const QByteArray size = QByteArray::number(pixels);
    return pdfStream("/Type /XObject /Subtype /Image /Width " + size + " /Height " + size + " " +
                         entries,
                     bytes);
}

QByteArray flateImage(const QByteArray &space, int components, int bits = 8,
                      const QByteArray &entries = {})
{
    const QByteArray samples = coding::samples(usualEdge, usualEdge, components);
    return imageOf("/Filter /FlateDecode /ColorSpace " + space + " /BitsPerComponent " +
                       QByteArray::number(bits) + " " + entries,
                   coding::flate(coding::packed(samples, usualEdge * components, bits)));
}

QByteArray jpegImage(const QByteArray &space, int components, coding::Colours colours,
                     const QByteArray &entries = {})
{
    return imageOf("/Filter /DCTDecode /BitsPerComponent 8 /ColorSpace " + space + " " + entries,
                   coding::jpeg(coding::samples(usualEdge, usualEdge, components), usualEdge,
                                usualEdge, components, colours));
}

// A picture of one bit: what is black is a round shape with stripes.
engine::Bitmap bitmap(int pixels)
{
    auto result = engine::Bitmap::blank(quint32(pixels), quint32(pixels));
    for (int y = 0; y < pixels; ++y) {
        for (int x = 0; x < pixels; ++x) {
            const bool inside = std::hypot(x - pixels / 2, y - pixels / 3) < pixels / 4.;
            if (inside && x % 40 < 30)
                result->row(std::size_t(y))[x / 8] |= quint8(0x80 >> x % 8);
        }
    }
    return *result;
}

constexpr int bilevelEdge = 1000; // 720 dpi on the page, 500 at 300 dpi

QByteArray bilevelImage(const QByteArray &entries)
{
    return imageOf(entries, QByteArray::fromStdString(bitmap(bilevelEdge).samples()), bilevelEdge);
}

const QByteArray palette = [] {
    QByteArray colours;
    for (int index = 0; index < 256; ++index) {
        for (const int channel : {index, 255 - index, index / 2})
            colours += QByteArray::number(channel + 256, 16).mid(1);
    }
    return QByteArray("[/Indexed /DeviceRGB 255 <" + colours + ">]");
}();

const QByteArray separation = "[/Separation /Spot /DeviceRGB << /FunctionType 2 /Domain [0 1] /N 1"
                              " /C0 [1 1 1] /C1 [.1 .2 .7] >>]";

QPDFObjectHandle entryOf(parsed::Document &document, const char *key)
{
    return document->getObject(5, 0).getDict().getKey(key);
}

} // namespace

class TestImages : public QObject
{
    Q_OBJECT

private slots:
    void smaller_data();
    void smaller();
    void bilevel_data();
    void bilevel();
    void bilevelFactors_data();
    void bilevelFactors();
    void leftAlone_data();
    void leftAlone();
    void softMask_data();
    void softMask();
    void softMaskOverColourKey();
    void otherKeysStay();
    void shownOften();
    void excluded();
    void jpegKeepsItsSamples_data();
    void jpegKeepsItsSamples();
    void gray_data();
    void gray();
    void samplingOfColours_data();
    void samplingOfColours();
    void patternsGlyphsAppearances();
    void albumIsChecked_data();
    void albumIsChecked();
    void index_data();
    void index();
};

void TestImages::smaller_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<QByteArray>("filter");
    using coding::Colours;
    const auto row = [](const char *name, const QByteArray &image) {
        QTest::newRow(name) << image << QByteArray("/DCTDecode");
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
void TestImages::smaller()
{
    QFETCH(QByteArray, image);
    QFETCH(QByteArray, filter);
    const QByteArray original = page({image});
    const auto result = shrinking::shrunk(original);
    QCOMPARE(result.albumPages, 1);
    QCOMPARE(result.taken.touched.size(), 1U);

    parsed::Document copy(result.document);
    parsed::Document before(original);
    QCOMPARE(entryOf(copy, "/Width").getIntValue(), 208);
    QCOMPARE(entryOf(copy, "/Height").getIntValue(), 208);
    QCOMPARE(entryOf(copy, "/BitsPerComponent").getIntValue(), 8);
    QCOMPARE(QByteArray::fromStdString(entryOf(copy, "/Filter").unparse()), filter);
    QCOMPARE(entryOf(copy, "/Decode").unparse(), entryOf(before, "/Decode").unparse());
    if (!image.contains("/Indexed"))
        QCOMPARE(entryOf(copy, "/ColorSpace").unparse(), entryOf(before, "/ColorSpace").unparse());
    for (const Reader reader : {Reader::Poppler, Reader::Mutool}) {
        const auto expected = pictures::drawn(reader, original);
        QVERIFY(!pictures::isPlain(expected.value(0)));
        const double difference =
            pictures::difference(pictures::drawn(reader, result.document), expected);
        QVERIFY2(difference < 8, std::to_string(difference).c_str());
    }
}

void TestImages::bilevel_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<QString>("change");
    QTest::addColumn<QByteArray>("filter");
    QTest::addColumn<int>("albumPages");
    QTest::addColumn<bool>("jbig2");
    const QString flate = u"-dMonoImageFilter=/FlateEncode"_s;
    const QByteArray bits = "/BitsPerComponent 1 /ColorSpace ";
    const auto kinds = [&](const char *name, const QByteArray &entries) {
        const QByteArray image = bilevelImage(entries);
        QTest::addRow("%s", name) << image << flate << QByteArray("/FlateDecode") << 0 << false;
        for (const auto &[change, filter] :
             {std::pair(u"-dMonoImageFilter=/CCITTFaxEncode"_s, "/CCITTFaxDecode"),
              std::pair(u"-dMonoImageFilter=/RunLengthEncode"_s, "/RunLengthDecode")})
            QTest::addRow("%s, %s", name, filter)
                << image << change << QByteArray(filter) << 1 << false;
        for (const auto &change :
             {u"-dMonoImageFilter=/JBIG2Encode"_s, u"-dAutoFilterMonoImages=true"_s})
            QTest::addRow("%s, %s", name, qPrintable(change))
                << image << change << QByteArray("/JBIG2Decode") << 0 << true;
        QTest::addRow("%s, Subsample", name) << image << u"-dMonoImageDownsampleType=/Subsample"_s
                                             << QByteArray("/FlateDecode") << 1 << false;
    };
    kinds("gray", bits + "/DeviceGray");
    kinds("inverted", bits + "/DeviceGray /Decode [1 0]");
    kinds("two colours", bits + "[/Indexed /DeviceRGB 1 <ff8800202060>]");
    kinds("two colours, inverted", bits + "[/Indexed /DeviceRGB 1 <ff8800202060>] /Decode [1 0]");
    kinds("Separation", bits + separation);
    kinds("stencil", "/ImageMask true");
    kinds("inverted stencil", "/ImageMask true /BitsPerComponent 1 /Decode [1 0]");

    const QString again = u"-dMonoImageFilter=/JBIG2Encode"_s;
    const QByteArray stream = QByteArray::fromStdString(engine::encodeJbig2(bitmap(bilevelEdge)));
    const QByteArray jbig2 =
        imageOf(bits + "/DeviceGray /Filter /JBIG2Decode", stream, bilevelEdge);
    QTest::newRow("from JBIG2") << jbig2 << again << QByteArray("/JBIG2Decode") << 1 << true;
    const QByteArray stencil = imageOf("/ImageMask true /Filter /JBIG2Decode", stream, bilevelEdge);
    QTest::newRow("from a stencil in JBIG2")
        << stencil << again << QByteArray("/JBIG2Decode") << 1 << true;
}

// Shown with 720 dpi, where 300 are asked for.
void TestImages::bilevel()
{
    QFETCH(QByteArray, image);
    QFETCH(QString, change);
    QFETCH(QByteArray, filter);
    QFETCH(int, albumPages);
    QFETCH(bool, jbig2);
    const QByteArray original = page({image});
    const auto result = shrinking::shrunk(original, {change});
    QCOMPARE(result.albumPages, albumPages);
    QCOMPARE(result.taken.touched.size(), 1U);
    QCOMPARE(result.taken.jbig2, jbig2);

    parsed::Document copy(result.document);
    parsed::Document before(original);
    QCOMPARE(entryOf(copy, "/Width").getIntValue(), 500);
    QCOMPARE(QByteArray::fromStdString(entryOf(copy, "/Filter").unparse()), filter);
    for (const char *key : {"/Decode", "/ColorSpace", "/ImageMask", "/BitsPerComponent"})
        QCOMPARE(entryOf(copy, key).unparse(), entryOf(before, key).unparse());
    for (const Reader reader : {Reader::Poppler, Reader::Mutool}) {
        const auto expected = pictures::drawn(reader, original);
        QVERIFY(!pictures::isPlain(expected.value(0)));
        const double difference =
            pictures::difference(pictures::drawn(reader, result.document), expected);
        QVERIFY2(difference < 16, std::to_string(difference).c_str());
    }
}

void TestImages::bilevelFactors_data()
{
    QTest::addColumn<double>("dpi");
    QTest::addColumn<int>("edge"); // of 1000
    QTest::newRow("few") << 449.0 << 1000;
    QTest::newRow("more, but not twice as many") << 450.0 << 1000;
    QTest::newRow("nearly twice as many") << 599.9 << 500;
    QTest::newRow("twice as many") << 600.0 << 500;
    QTest::newRow("nearly three times as many") << 880.0 << 500;
    QTest::newRow("three times as many") << 900.0 << 334;
}

void TestImages::bilevelFactors()
{
    QFETCH(double, dpi);
    for (const auto sampling : {engine::Sampling::Subsample, engine::Sampling::Bicubic}) {
        engine::ClassOptions options;
        options.sampling = sampling;
        options.resolution = 300;
        const auto smaller = engine::smallerBilevel(bitmap(1000), dpi, options);
        QVERIFY(smaller);
        QTEST(int(smaller->width), "edge");
        QTEST(int(smaller->height), "edge");
    }
}

void TestImages::leftAlone_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("reason");
    using engine::LeftAlone;
    const auto row = [](const char *name, const QByteArray &document, LeftAlone reason) {
        QTest::newRow(name) << document << int(reason);
    };
    const auto image = [&](const char *name, const QByteArray &entries, LeftAlone reason) {
        row(name, page({flateImage("/DeviceRGB", 3, 8, entries)}), reason);
    };
    const QByteArray rgb = flateImage("/DeviceRGB", 3);
    image("colour key", "/Mask [0 10 0 10 0 10]", LeftAlone::ColourKey);
    row("matte",
        page({flateImage("/DeviceRGB", 3, 8, "/SMask 6 0 R"),
              flateImage("/DeviceGray", 1, 8, "/Matte [0 0 0]")}),
        LeftAlone::Matte);
    image("soft mask inside", "/SMaskInData 1", LeftAlone::SoftMaskInside);
    image("alternates", "/Alternates [<< /Image 5 0 R >>]", LeftAlone::Alternates);
    row("no width", page({pdfStream("/Subtype /Image /Height 10", "x")}), LeftAlone::Damaged);
    row("Lab", page({flateImage("[/Lab << /WhitePoint [.95 1 1.09] >>]", 3)}),
        LeftAlone::ColourSpace);
    row("DeviceN",
        page({flateImage("[/DeviceN [/A /B /C] /DeviceRGB << /FunctionType 4 /Domain"
                         " [0 1 0 1 0 1] /Range [0 1 0 1 0 1] >>]",
                         3)}),
        LeftAlone::ColourSpace);
    row("unknown space", page({flateImage("/Unknown", 3)}), LeftAlone::ColourSpace);
    row("no space", page({flateImage("null", 3)}), LeftAlone::ColourSpace);
    row("profile of Lab",
        page({flateImage("[/ICCBased 6 0 R]", 3),
              pdfStream("/N 3 /Alternate [/Lab << /WhitePoint [.95 1 1.09] >>]", "x")}),
        LeftAlone::ColourSpace);
    row("indexed, with Decode", page({flateImage(palette, 1, 8, "/Decode [255 0]")}),
        LeftAlone::Decode);
    row("JPEG 2000", page({imageOf("/Filter /JPXDecode", "no picture")}), LeftAlone::Jpeg2000);
    row("unknown filter",
        page({imageOf("/ColorSpace /DeviceRGB /BitsPerComponent 8 /Filter /Odd",
                      QByteArray(1000, 'x'))}),
        LeftAlone::Filter);
    row("chain",
        page({imageOf("/ColorSpace /DeviceRGB /BitsPerComponent 8"
                      " /Filter [/DCTDecode /FlateDecode]",
                      QByteArray(1000, 'x'))}),
        LeftAlone::ChainedFilters);
    row("JPEG, RGB by its parameters",
        page({jpegImage("/DeviceRGB", 3, coding::Colours::Unmarked,
                        "/DecodeParms << /ColorTransform 0 >>")}),
        LeftAlone::ColourTransform);
    row("JPEG of another size",
        page({imageOf("/ColorSpace /DeviceRGB /BitsPerComponent 8 /Filter /DCTDecode",
                      coding::jpeg(coding::samples(300, 300, 3), 300, 300, 3))}),
        LeftAlone::Damaged);
    row("JPEG of other components", page({jpegImage("/DeviceCMYK", 3, coding::Colours::Plain)}),
        LeftAlone::Damaged);
    row("3 bits",
        page({imageOf("/ColorSpace /DeviceGray /BitsPerComponent 3 /Filter /FlateDecode",
                      coding::flate(coding::samples(usualEdge, usualEdge, 1)))}),
        LeftAlone::Damaged);
    row("nowhere", page({rgb}, "0 0 m"), LeftAlone::NotFound);
    row("outside", page({rgb}, "100 0 0 100 500 50 cm /I Do"), LeftAlone::NotShown);
    row("small", page({rgb}, "2 0 0 2 50 50 cm /I Do"), LeftAlone::ShownSmall);
    row("flat", page({rgb}, "100 0 0 0 50 50 cm /I Do"), LeftAlone::ShownSmall);
    row("huge", page({rgb}, "20000 0 0 20000 0 0 cm /I Do"), LeftAlone::ShownLarge);
    row("damaged content", page({rgb}, "100 0 0 100 50 50 cm /I Do (never"), LeftAlone::Unclear);
    row("image and mask", page({flateImage("/DeviceGray", 1, 8, "/SMask 5 0 R")}),
        LeftAlone::OfTwoKinds);
}

void TestImages::leftAlone()
{
    QFETCH(QByteArray, document);
    QFETCH(int, reason);
    parsed::Document original(document);
    const auto images = engine::surveyImages(original);
    QVERIFY(!images.empty());
    QCOMPARE(images.front().object, 5);
    QCOMPARE(int(images.front().facts.reason), reason);
    if (images.front().facts.reason != engine::LeftAlone::No)
        QCOMPARE(shrinking::shrunk(document).taken.touched.size(), 0U);
}

void TestImages::softMask_data()
{
    QTest::addColumn<QByteArray>("mask");
    QTest::addColumn<QString>("change");
    QTest::addColumn<int>("edge");
    const QByteArray soft = flateImage("/DeviceGray", 1, 8);
    QTest::newRow("Bicubic") << soft << QString() << 208;
    QTest::newRow("Average") << soft << u"-dGrayImageDownsampleType=/Average"_s << 208;
    QTest::newRow("Subsample") << soft << u"-dGrayImageDownsampleType=/Subsample"_s << 208;
    QTest::newRow("Closed") << soft << u"-dDownsampleGrayImages=false"_s << 400;
    QTest::newRow("less") << soft << u"-dGrayImageResolution=250"_s << 400;
    QTest::newRow("negative") << flateImage("/DeviceGray", 1, 8, "/Decode [1 0]") << QString()
                              << 208;
    QTest::newRow("JPEG") << jpegImage("/DeviceGray", 1, coding::Colours::Plain) << QString()
                          << 400;
}

// Without loss but for its samples' number, whatever becomes of its image.
void TestImages::softMask()
{
    QFETCH(QByteArray, mask);
    QFETCH(QString, change);
    QFETCH(int, edge);
    const QByteArray original = page({flateImage("/DeviceRGB", 3, 8, "/SMask 6 0 R"), mask});
    const auto result =
        shrinking::shrunk(original, change.isEmpty() ? QStringList{} : QStringList{change});
    parsed::Document copy(result.document);
    QPDFObjectHandle dictionary = copy->getObject(6, 0).getDict();
    QCOMPARE(dictionary.getKey("/Width").getIntValue(), edge);
    QCOMPARE(dictionary.getKey("/Height").getIntValue(), edge);
    QCOMPARE(dictionary.getKey("/Filter").isNameAndEquals("/DCTDecode"),
             mask.contains("/DCTDecode"));
    QCOMPARE(entryOf(copy, "/Width").getIntValue(), 208);
    QCOMPARE(entryOf(copy, "/SMask").getObjectID(), 6);
    QCOMPARE(result.taken.touched.size(), edge < 400 ? 2U : 1U);
    for (const Reader reader : {Reader::Poppler, Reader::Mutool}) {
        const double difference = pictures::difference(pictures::drawn(reader, result.document),
                                                       pictures::drawn(reader, original));
        QVERIFY2(difference < 8, std::to_string(difference).c_str());
    }
}

// Readers go by the soft mask where there is a colour key as well.
void TestImages::softMaskOverColourKey()
{
    const QByteArray original =
        page({flateImage("/DeviceRGB", 3, 8, "/Mask [0 255 0 255 0 255] /SMask 6 0 R"),
              flateImage("/DeviceGray", 1)});
    const auto result = shrinking::shrunk(original);
    QCOMPARE(result.taken.touched.size(), 2U);
    for (const Reader reader : {Reader::Poppler, Reader::Mutool}) {
        const auto expected = pictures::drawn(reader, original);
        QVERIFY(!pictures::isPlain(expected.value(0)));
        QVERIFY(pictures::difference(pictures::drawn(reader, result.document), expected) < 8);
    }
}

void TestImages::otherKeysStay()
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
void TestImages::shownOften()
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

void TestImages::excluded()
{
    const QByteArray original =
        page({flateImage("/DeviceRGB", 3, 8, "/SMask 6 0 R"), flateImage("/DeviceGray", 1)});
    const auto result = shrinking::shrunk(original, {}, {5});
    QCOMPARE(result.taken.touched.size(), 1U);
    QCOMPARE(result.taken.touched[0].object, 6);
    QCOMPARE(shrinking::shrunk(original, {}, {5, 6}).taken.touched.size(), 0U);
}

void TestImages::jpegKeepsItsSamples_data()
{
    QTest::addColumn<QString>("change");
    for (const char *change : {"-dDownsampleColorImages=false", "-dColorImageResolution=200",
                               "-dColorImageResolution=300"})
        QTest::newRow(change) << QString(change);
}

// One that is not downsampled is not recoded either, whatever the filter.
void TestImages::jpegKeepsItsSamples()
{
    QFETCH(QString, change);
    const QByteArray original = page({jpegImage("/DeviceRGB", 3, coding::Colours::Plain)});
    for (const QString &filter :
         {u"-dColorImageFilter=/DCTEncode"_s, u"-dColorImageFilter=/FlateEncode"_s,
          u"-dAutoFilterColorImages=true"_s}) {
        const auto result = shrinking::shrunk(original, {change, filter});
        QCOMPARE(result.albumPages, 0);
        QCOMPARE(result.taken.touched.size(), 0U);
    }
}

void TestImages::gray_data()
{
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<int>("edge");
    QTest::newRow("default") << QStringList{} << 208;
    QTest::newRow("Average") << QStringList{u"-dGrayImageDownsampleType=/Average"_s} << 200;
    QTest::newRow("Subsample") << QStringList{u"-dGrayImageDownsampleType=/Subsample"_s} << 200;
    QTest::newRow("Closed") << QStringList{u"-dDownsampleGrayImages=false"_s} << 400;
    QTest::newRow("72") << QStringList{u"-dGrayImageResolution=72"_s} << 100;
    QTest::newRow("192") << QStringList{u"-dGrayImageResolution=193"_s} << 400;
}

void TestImages::gray()
{
    QFETCH(QStringList, changes);
    QFETCH(int, edge);
    parsed::Document copy(
        shrinking::shrunk(page({flateImage("/DeviceGray", 1)}), changes).document);
    QCOMPARE(entryOf(copy, "/Width").getIntValue(), edge);
    QVERIFY(entryOf(copy, "/Filter").isNameAndEquals("/DCTDecode"));
}

void TestImages::samplingOfColours_data()
{
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<int>("edge");
    QTest::addColumn<QByteArray>("filter");
    const QByteArray jpeg = "/DCTDecode";
    const QByteArray flate = "/FlateDecode";
    QTest::newRow("default") << QStringList{} << 208 << jpeg;
    QTest::newRow("Average") << QStringList{u"-dColorImageDownsampleType=/Average"_s} << 200
                             << jpeg;
    QTest::newRow("Subsample") << QStringList{u"-dColorImageDownsampleType=/Subsample"_s} << 200
                               << jpeg;
    QTest::newRow("Closed") << QStringList{u"-dDownsampleColorImages=false"_s} << 400 << jpeg;
    QTest::newRow("ZIP") << QStringList{u"-dColorImageFilter=/FlateEncode"_s} << 208 << flate;
    QTest::newRow("ZIP, Closed") << QStringList{u"-dDownsampleColorImages=false"_s,
                                                u"-dColorImageFilter=/FlateEncode"_s}
                                 << 400 << flate;
}

void TestImages::samplingOfColours()
{
    QFETCH(QStringList, changes);
    QFETCH(int, edge);
    QFETCH(QByteArray, filter);
    parsed::Document copy(shrinking::shrunk(page({flateImage("/DeviceRGB", 3)}), changes).document);
    QCOMPARE(entryOf(copy, "/Width").getIntValue(), edge);
    QCOMPARE(QByteArray::fromStdString(entryOf(copy, "/Filter").unparse()), filter);
}

// What is found there is as large as it is shown there.
void TestImages::patternsGlyphsAppearances()
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
    for (const Reader reader : {Reader::Poppler, Reader::Mutool}) {
        const double difference = pictures::difference(pictures::drawn(reader, result.document),
                                                       pictures::drawn(reader, document));
        QVERIFY2(difference < 12, std::to_string(difference).c_str());
    }
}

void TestImages::albumIsChecked_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("other space") << QByteArray("/DeviceRGB") << QByteArray("/DeviceLab");
    QTest::newRow("no image") << QByteArray("/Subtype/Image") << QByteArray("/Subtype/Imago");
    QTest::newRow("other bits") << QByteArray("/BitsPerComponent 8")
                                << QByteArray("/BitsPerComponent 4");
    QTest::newRow("wider") << QByteArray("/Width 208") << QByteArray("/Width 209");
    QTest::newRow("many") << QByteArray("/Width 208") << QByteArray("/Width 999");
    QTest::newRow("no JPEG") << QByteArray("\xff\xd8\xff") << QByteArray("\xff\xd9\xff");
}

// What Ghostscript wrote is not taken at its word.
void TestImages::albumIsChecked()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QByteArray original = page({flateImage("/DeviceRGB", 3)});
    auto result = shrinking::shrunk(original);
    QVERIFY(result.written.contains(before));
    parsed::Document document(original);
    parsed::Document spoilt(result.written.replace(before, after));
    const auto taken = engine::takeImages(document, spoilt.operator->(), {{5, 288}},
                                          engine::imageOptionsOf(shrinking::words()), {});
    QCOMPARE(taken.touched.size(), 0U);

    // Nor an image of a page that is smaller than it is shown now.
    parsed::Document again(original);
    parsed::Document sound(shrinking::shrunk(original).written);
    const auto options = engine::imageOptionsOf(shrinking::words());
    QCOMPARE(engine::takeImages(again, sound.operator->(), {{5, 300}}, options, {}).touched.size(),
             0U);
    QCOMPARE(engine::takeImages(again, sound.operator->(), {{0, 288}}, options, {}).touched.size(),
             0U);
    QCOMPARE(engine::takeImages(again, sound.operator->(), {{5, 288}, {5, 288}}, options, {})
                 .touched.size(),
             0U);
    QCOMPARE(engine::takeImages(again, sound.operator->(), {{5, 288}}, options, {}).touched.size(),
             1U);
}

void TestImages::index_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("right");
    QTest::newRow("none") << QByteArray() << true;
    QTest::newRow("two") << QByteArray("5 288\n0 0.1\n") << true;
    for (const char *wrong :
         {"5 288", "5\n", "5 0\n", "5 nan\n", "-5 1\n", "5 1 1\n", "x 1\n", "\n"})
        QTest::newRow(wrong) << QByteArray(wrong) << false;
}

void TestImages::index()
{
    QFETCH(QByteArray, lines);
    QFETCH(bool, right);
    const auto index = engine::albumIndexOf(lines.toStdString());
    QCOMPARE(index.has_value(), right);
    if (!right)
        return;
    const auto again = engine::albumIndexOf(engine::linesOf(*index));
    QVERIFY(again.has_value());
    QCOMPARE(again->size(), index->size());
    for (std::size_t page = 0; page < index->size(); ++page) {
        QCOMPARE((*again)[page].object, (*index)[page].object);
        QCOMPARE((*again)[page].dpi, (*index)[page].dpi);
    }
}

QTEST_GUILESS_MAIN(TestImages)
#include "tst_images.moc"
