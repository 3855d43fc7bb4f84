// Images of one bit a sample: made smaller by the engine itself, coded by it or by Ghostscript.
#include "imagedocuments.h"
#include "parsed.h"
#include "pictures.h"
#include "shrinking.h"

#include "engine/bilevel/jbig2.h"
#include "engine/images/smallerimage.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace imagedocuments;

class TestBilevelImages : public QObject
{
    Q_OBJECT

private slots:
    void bilevel_data();
    void bilevel();
    void bilevelFactors_data();
    void bilevelFactors();
};

void TestBilevelImages::bilevel_data()
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
void TestBilevelImages::bilevel()
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
    QCOMPARE_LT(pictures::difference(result.document, original), 16.);
}

void TestBilevelImages::bilevelFactors_data()
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

void TestBilevelImages::bilevelFactors()
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

QTEST_GUILESS_MAIN(TestBilevelImages)
#include "tst_bilevelimages.moc"
