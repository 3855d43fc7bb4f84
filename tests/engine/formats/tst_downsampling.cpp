#include "engine/formats/downsampling.h"

#include <QRandomGenerator>
#include <QTest>

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
    void factors_data();
    void factors();
    void greysStay();
    void edgesStay();
    void subsamples();
};

void TestDownsampling::factors_data()
{
    QTest::addColumn<int>("large");
    QTest::addColumn<int>("small");
    QTest::addColumn<int>("factor");
    QTest::newRow("halves") << 100 << 50 << 2;
    QTest::newRow("a half and one") << 101 << 51 << 2;
    QTest::newRow("a half less one") << 101 << 50 << 2;
    QTest::newRow("thirds") << 100 << 34 << 3;
    QTest::newRow("whole") << 100 << 100 << 0;
    QTest::newRow("larger") << 100 << 101 << 0;
    QTest::newRow("no whole number") << 100 << 60 << 0;
    QTest::newRow("to one") << 7 << 1 << 7;
    QTest::newRow("to nothing") << 7 << 0 << 0;
    QTest::newRow("of nothing") << 0 << 7 << 0;
}

void TestDownsampling::factors()
{
    QFETCH(int, large);
    QFETCH(int, small);
    QTEST(int(engine::factorOf(quint32(large), quint32(small))), "factor");
}

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

void TestDownsampling::subsamples()
{
    const auto bitmap = greyBitmap(201, 8);
    auto small = *engine::Bitmap::blank(67, 67);
    for (quint32 y = 0; y < 67; ++y) {
        for (quint32 x = 0; x < 67; ++x) {
            const quint32 place = x * 3 + 1;
            if ((bitmap.row(y * 3 + 2)[place / 8] & (0x80 >> place % 8)) != 0)
                small.row(y)[x / 8] = quint8(small.row(y)[x / 8] | (0x80 >> x % 8));
        }
    }
    QVERIFY(engine::subsampleOf(small, bitmap, 3) == engine::Subsample::Same);
    small.invert();
    QVERIFY(engine::subsampleOf(small, bitmap, 3) == engine::Subsample::Opposite);
    QVERIFY(engine::subsampleOf(greyBitmap(67, 8), bitmap, 3) == engine::Subsample::No);
}

QTEST_GUILESS_MAIN(TestDownsampling)
#include "tst_downsampling.moc"
