#include "parsed.h"
#include "samples.h"

#include "engine/images/imagefacts.h"

#include <QTest>

using namespace parsed;

class TestImageFacts : public QObject
{
    Q_OBJECT

private slots:
    void bilevel_data();
    void bilevel();
};

void TestImageFacts::bilevel_data()
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

void TestImageFacts::bilevel()
{
    QFETCH(QByteArray, entries);
    QFETCH(bool, is);
    const QList<QByteArray> objects = {
        formOf({}), formOf("12345678", "/Subtype /Image /Width 8 /Height 8 " + entries),
        pdfStream("/N 1", {}), pdfStream("/N 3", {})};
    Document document(showing({}, objects));
    const auto facts = engine::factsOf(document->getObject(6, 0), false);
    QCOMPARE(facts.reason == engine::LeftAlone::No && facts.kind == engine::ImageKind::Bilevel, is);
    QVERIFY(engine::factsOf(document->getObject(5, 0), false).reason != engine::LeftAlone::No);
}

QTEST_GUILESS_MAIN(TestImageFacts)
#include "tst_imagefacts.moc"
