#include "engine/bilevel/downsampling.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Every pixel is black with this chance in so many of 16.
engine::Bitmap greyBitmap(quint32 edge, int sixteenths)
{
    QRandomGenerator random(1);
    auto bitmap = *engine::Bitmap::blank(edge, edge);
    for (quint32 y = 0; y < edge; ++y) {
        for (quint32 x = 0; x < edge; ++x) {
            if (random.bounded(16) < sixteenths)
                bitmap.row(y)[x / 8] = quint8(bitmap.row(y)[x / 8] | (0x80 >> x % 8));
        }
    }
    return bitmap;
}

double blackShareOf(const engine::Bitmap &bitmap)
{
    double black = 0;
    for (quint32 y = 0; y < bitmap.height(); ++y) {
        for (quint32 x = 0; x < bitmap.width(); ++x)
            black += (bitmap.row(y)[x / 8] & (0x80 >> x % 8)) != 0 ? 1 : 0;
    }
    return black / bitmap.width() / bitmap.height();
}

} // namespace

class TestDownsampling : public QObject
{
    Q_OBJECT

private slots:
    void greysStay();
    void edgesStay();
    void thinLinesStay();
    void subsampled();
};

void TestDownsampling::greysStay()
{
    for (const int sixteenths : {0, 1, 4, 8, 13, 16}) {
        const auto bitmap = greyBitmap(300, sixteenths);
        for (const quint32 factor : {1U, 2U, 3U, 7U}) {
            const auto small = engine::downsampled(bitmap, factor, 300 / factor, 300 / factor);
            QVERIFY(small);
            QCOMPARE(small->width(), 300 / factor);
            QVERIFY2(qAbs(blackShareOf(*small) - blackShareOf(bitmap)) < 0.02,
                     qPrintable(u"%1 %2"_s.arg(sixteenths).arg(factor)));
        }
    }
}

// A stroke of four pixels makes one of two, with nothing around it.
void TestDownsampling::edgesStay()
{
    auto bitmap = *engine::Bitmap::blank(64, 64);
    for (quint32 y = 0; y < 64; ++y)
        bitmap.row(y)[3] = 0xf0;
    const auto small = engine::downsampled(bitmap, 2, 32, 32);
    for (quint32 y = 0; y < 32; ++y)
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(small->row(y)), 4).toHex(),
                 QByteArray("000c0000"));
    QVERIFY(!engine::downsampled(bitmap, 2, 33, 32));
    QVERIFY(!engine::downsampled(bitmap, 2, 0, 32));
    QVERIFY(engine::downsampled(bitmap, 5, 13, 13));
}

// Lines a third as thick as a pixel of the result: none of their black is lost to the white around.
void TestDownsampling::thinLinesStay()
{
    auto bitmap = *engine::Bitmap::blank(600, 600);
    for (quint32 y = 40; y < 600; y += 60)
        std::fill_n(bitmap.row(y), 75, quint8(0xff));
    const auto small = engine::downsampled(bitmap, 3, 200, 200);
    const double share = blackShareOf(*small) / blackShareOf(bitmap);
    QVERIFY2(share > 0.9 && share < 1.1, qPrintable(QString::number(share)));
}

void TestDownsampling::subsampled()
{
    const auto bitmap = greyBitmap(201, 8);
    const auto small = engine::subsampled(bitmap, 67, 50);
    QVERIFY(small);
    QCOMPARE(small->width(), 67U);
    QCOMPARE(small->height(), 50U);
    for (quint32 y = 0; y < 50; ++y) {
        for (quint32 x = 0; x < 67; ++x) {
            const quint32 column = x * 3 + 1;
            const quint32 row = (2 * y + 1) * 201 / 100;
            QCOMPARE((small->row(y)[x / 8] & (0x80 >> x % 8)) != 0,
                     (bitmap.row(row)[column / 8] & (0x80 >> column % 8)) != 0);
        }
    }
    QVERIFY(!engine::subsampled(bitmap, 202, 50));
    QVERIFY(!engine::subsampled(bitmap, 67, 0));
}

QTEST_GUILESS_MAIN(TestDownsampling)
#include "tst_downsampling.moc"
