// Which images are left alone, and why.
#include "imagedocuments.h"
#include "parsed.h"
#include "samples.h"
#include "shrinking.h"

#include <QRectF>
#include <QTest>

#include <algorithm>

using namespace imagedocuments;

class TestSurvey : public QObject
{
    Q_OBJECT

private slots:
    void leftAlone_data();
    void leftAlone();
    void places_data();
    void places();
    void manyPlaces();
};

void TestSurvey::leftAlone_data()
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

void TestSurvey::leftAlone()
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

void TestSurvey::places_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QRectF>("place");
    const QByteArray rgb = flateImage("/DeviceRGB", 3);
    QTest::newRow("on the page") << page({rgb}) << QRectF(50, 50, 100, 100);
    const auto tiled = [&](const QByteArray &entries) {
        QByteArray document = page({rgb, pdfStream("/PatternType 1 /PaintType 1 /TilingType 1"
                                                   " /BBox [0 0 50 50] /XStep 50 /YStep 50"
                                                   " /Resources << /XObject << /I 5 0 R >> >>",
                                                   "50 0 0 50 0 0 cm /I Do")},
                                   "/Pattern cs /P scn 10 10 30 30 re f");
        return document.replace("/Resources << /XObject",
                                entries + " /Resources << /Pattern << /P 6 0 R >> /XObject");
    };
    QTest::newRow("in a pattern: anywhere") << tiled({}) << QRectF(0, 0, 200, 200);
    QTest::newRow("in a pattern, larger unit") << tiled("/UserUnit 2") << QRectF(0, 0, 400, 400);
    QTest::newRow("in a pattern, damaged page")
        << tiled({}).replace("[0 0 200 200]", "[0 0 200]    ") << QRectF(0, 0, 612, 792);
}

void TestSurvey::places()
{
    QFETCH(QByteArray, document);
    QFETCH(QRectF, place);
    parsed::Document original(document);
    const auto images = engine::surveyImages(original);
    QCOMPARE(images.front().parts.size(), 1U);
    const engine::TouchedPart &part = images.front().parts.front();
    QCOMPARE(QRectF(QPointF(part.left, part.bottom), QPointF(part.right, part.top)), place);
}

// Not each is kept, but all of them are covered.
void TestSurvey::manyPlaces()
{
    QByteArray content;
    for (int place = 0; place < 30; ++place)
        content += "q 10 0 0 10 " + QByteArray::number(5 * place) + ' ' +
                   QByteArray::number(5 * place) + " cm /I Do Q ";
    parsed::Document original(page({flateImage("/DeviceRGB", 3)}, content));
    const auto parts = engine::surveyImages(original).front().parts;
    QVERIFY(parts.size() < 30);
    for (int place = 0; place < 30; ++place) {
        const QRectF shown(5 * place, 5 * place, 10, 10);
        QVERIFY(std::any_of(parts.begin(), parts.end(), [&](const engine::TouchedPart &part) {
            return QRectF(QPointF(part.left, part.bottom), QPointF(part.right, part.top))
                .contains(shown);
        }));
    }
}

QTEST_GUILESS_MAIN(TestSurvey)
#include "tst_survey.moc"
