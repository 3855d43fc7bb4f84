#include "parsed.h"
#include "samples.h"

#include "engine/images/bilevelbitmap.h"

#include <QTest>

using namespace parsed;

class TestBilevelBitmap : public QObject
{
    Q_OBJECT

private slots:
    void bilevel_data();
    void bilevel();
};

void TestBilevelBitmap::bilevel_data()
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

void TestBilevelBitmap::bilevel()
{
    QFETCH(QByteArray, entries);
    QFETCH(bool, is);
    const QList<QByteArray> objects = {formOf({}), formOf({}, "/Subtype /Image " + entries),
                                       pdfStream("/N 1", {}), pdfStream("/N 3", {})};
    Document document(showing({}, objects));
    QCOMPARE(engine::isBilevelImage(document->getObject(6, 0)), is);
    QVERIFY(!engine::isBilevelImage(document->getObject(5, 0)));
    QVERIFY(!engine::isBilevelImage(document->getObject(3, 0)));
}

QTEST_GUILESS_MAIN(TestBilevelBitmap)
#include "tst_bilevelbitmap.moc"
