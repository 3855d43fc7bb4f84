// The album is held against what was asked for, and its index read strictly.
#include "imagedocuments.h"
#include "parsed.h"
#include "shrinking.h"

#include <QTest>

using namespace imagedocuments;

class TestAlbum : public QObject
{
    Q_OBJECT

private slots:
    void albumIsChecked_data();
    void albumIsChecked();
    void index_data();
    void index();
};

void TestAlbum::albumIsChecked_data()
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
void TestAlbum::albumIsChecked()
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

void TestAlbum::index_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("right");
    QTest::newRow("none") << QByteArray() << true;
    QTest::newRow("two") << QByteArray("5 288\n0 0.5\n") << true;
    for (const char *wrong : {"5 288", "5\n", "5 0\n", "5 nan\n", "-5 1\n", "5 1 1\n", "x 1\n",
                              "\n", "5 inf\n", " 5 1\n", "5 1.0\n", "5 0x1\n", "5 1\n\n"})
        QTest::newRow(wrong) << QByteArray(wrong) << false;
}

void TestAlbum::index()
{
    QFETCH(QByteArray, lines);
    QFETCH(bool, right);
    const auto index = engine::albumIndexOf(lines.toStdString());
    QCOMPARE(index.has_value(), right);
    if (right)
        QCOMPARE(QByteArray::fromStdString(engine::linesOf(*index)), lines);
}

QTEST_GUILESS_MAIN(TestAlbum)
#include "tst_album.moc"
