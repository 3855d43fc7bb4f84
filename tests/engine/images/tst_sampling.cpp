// How many samples images keep, and how they are coded, by the switches.
#include "imagedocuments.h"
#include "parsed.h"
#include "pictures.h"
#include "shrinking.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace imagedocuments;

class TestSampling : public QObject
{
    Q_OBJECT

private slots:
    void sampling_data();
    void sampling();
    void softMask_data();
    void softMask();
    void jpegKeepsItsSamples_data();
    void jpegKeepsItsSamples();
};

void TestSampling::sampling_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<QString>("changes");
    QTest::addColumn<int>("edge");
    QTest::addColumn<QByteArray>("filter");
    const auto rows = [](const QByteArray &space, int components, const char *name) {
        const auto row = [&](const QString &changes, int edge, const char *filter = "/DCTDecode") {
            const QString given = changes.arg(name);
            QTest::addRow("%s %s", space.constData(), qPrintable(given))
                << flateImage(space, components) << given << edge << QByteArray(filter);
        };
        row({}, 208);
        row(u"-d%1ImageDownsampleType=/Average"_s, 200);
        row(u"-d%1ImageDownsampleType=/Subsample"_s, 200);
        row(u"-dDownsample%1Images=false"_s, 400);
        row(u"-d%1ImageResolution=72"_s, 100);
        row(u"-d%1ImageResolution=193"_s, 400);
        row(u"-d%1ImageFilter=/FlateEncode"_s, 208, "/FlateDecode");
        row(u"-dDownsample%1Images=false -d%1ImageFilter=/FlateEncode"_s, 400, "/FlateDecode");
    };
    rows("/DeviceRGB", 3, "Color");
    rows("/DeviceGray", 1, "Gray");
}

// Shown with 288 dpi; the means of squares and single samples are taken for a whole number.
void TestSampling::sampling()
{
    QFETCH(QByteArray, image);
    QFETCH(QString, changes);
    const auto result = shrinking::shrunk(page({image}), changes.split(' ', Qt::SkipEmptyParts));
    parsed::Document copy(result.document);
    QTEST(int(entryOf(copy, "/Width").getIntValue()), "edge");
    QTEST(QByteArray::fromStdString(entryOf(copy, "/Filter").unparse()), "filter");
}

void TestSampling::softMask_data()
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
void TestSampling::softMask()
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
    QCOMPARE_LT(pictures::difference(result.document, original), 8.);
}

void TestSampling::jpegKeepsItsSamples_data()
{
    QTest::addColumn<QString>("change");
    for (const char *change : {"-dDownsampleColorImages=false", "-dColorImageResolution=200",
                               "-dColorImageResolution=300"})
        QTest::newRow(change) << QString(change);
}

// One that is not downsampled is not recoded either, whatever the filter.
void TestSampling::jpegKeepsItsSamples()
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

QTEST_GUILESS_MAIN(TestSampling)
#include "tst_sampling.moc"
