#include "bitmaps.h"
#include "engine/bilevel/arithmeticencoder.h"
#include "engine/bilevel/halftone.h"
#include "engine/bilevel/jbig2.h"

#include <QTemporaryDir>
#include <QTest>

class TestJbig2 : public QObject
{
    Q_OBJECT

private slots:
    void arithmeticCode();
    void runsOfOneBit();
    void nothing();
    void tooLarge();
    void samples();
    void container();
    void roundTrip_data();
    void roundTrip();
    void codings_data();
    void codings();
    void halftones();
    void best();
};

namespace {

Jbig2Stream encoded(const engine::Bitmap &bitmap)
{
    return {engine::encodeJbig2(bitmap), bitmap.width(), bitmap.height()};
}

int firstDifference(const Bitmaps &bitmaps, const Bitmaps &others)
{
    const auto [one, other] =
        std::mismatch(bitmaps.begin(), bitmaps.end(), others.begin(), others.end());
    return one == bitmaps.end() && other == others.end() ? -1 : int(one - bitmaps.begin());
}

Bitmaps everyWidth()
{
    QRandomGenerator random(1);
    Bitmaps bitmaps;
    for (quint32 width = 1; width <= 70; ++width) {
        for (const quint32 height : {1U, 2U, 3U, 40U})
            bitmaps << noise(width, height, 25, random);
    }
    return bitmaps;
}

Bitmaps everyDensity()
{
    QRandomGenerator random(2);
    Bitmaps bitmaps;
    for (quint32 density = 0; density <= 100; density += 5)
        bitmaps << noise(300 + density, 200, density, random);
    return bitmaps;
}

Bitmaps solids()
{
    Bitmaps bitmaps;
    for (const quint32 width : {1U, 7U, 8U, 9U, 64U, 1000U}) {
        for (const quint32 height : {1U, 2U, 1000U})
            bitmaps << solid(width, height, false) << solid(width, height, true);
    }
    return bitmaps;
}

Bitmaps texts()
{
    QRandomGenerator random(3);
    Bitmaps bitmaps = {text(2480, 3508, random), text(1001, 777, random)};
    engine::Bitmap whiteOnBlack = text(1003, 400, random);
    whiteOnBlack.invert();
    return bitmaps << whiteOnBlack;
}

Bitmaps patterns()
{
    return {drawn(500, 300, [](quint32 x, quint32 y) { return (x + y) % 2 == 0; }),
            drawn(500, 300, [](quint32 x, quint32) { return x % 3 == 0; }),
            drawn(500, 300, [](quint32, quint32 y) { return y % 5 == 0; }),
            drawn(501, 300, [](quint32 x, quint32 y) { return (x ^ y) % 7 < 3; }),
            halftone(800, 300, 8),
            halftone(333, 200, 11),
            drawn(1, 5000, [](quint32, quint32 y) { return y % 64 < 9; }),
            drawn(70000, 2, [](quint32 x, quint32 y) { return x % 4096 < 9 + y; })};
}

} // namespace

// The test sequence of T.88, annex H.2.
void TestJbig2::arithmeticCode()
{
    const QByteArray data =
        QByteArray::fromHex("00020051000000c00352872aaaaaaaaa82c02000fcd79ef6bf7fed904f46a3bf");
    engine::ArithmeticEncoder encoder;
    engine::ArithmeticState state = 0;
    for (const char byte : data) {
        for (int bit = 7; bit >= 0; --bit)
            encoder.encode(state, unsigned(byte) >> bit & 1U);
    }
    QCOMPARE(QByteArray::fromStdString(encoder.finish()).toHex(),
             QByteArray("84c73bfce1a1430402200000410dbb86f4317fff88ff37471adb6adfffac"));
}

void TestJbig2::runsOfOneBit()
{
    QRandomGenerator random(4);
    engine::ArithmeticEncoder atOnce;
    engine::ArithmeticEncoder oneByOne;
    engine::ArithmeticState states[2] = {0, 0};
    for (int round = 0; round < 2000; ++round) {
        const quint32 bit = random.bounded(8U) == 0 ? 1 : 0;
        const quint32 length = random.bounded(round % 100 == 0 ? 300'000U : 20U);
        atOnce.encodeRun(states[0], bit, length);
        for (quint32 i = 0; i < length; ++i)
            oneByOne.encode(states[1], bit);
        QCOMPARE(states[0], states[1]);
    }
    QCOMPARE(atOnce.finish(), oneByOne.finish());
}

void TestJbig2::nothing()
{
    QCOMPARE(engine::encodeJbig2(solid(0, 5, false)), std::string());
    QCOMPARE(engine::encodeJbig2(solid(5, 0, false)), std::string());
}

void TestJbig2::tooLarge()
{
    constexpr quint32 huge = ~0U;
    QVERIFY(!engine::Bitmap::blank(huge, huge));
    QVERIFY(!engine::Bitmap::blank(8, huge));
    QVERIFY(!engine::Bitmap::blank(huge, 8));
    QVERIFY(!engine::Bitmap::ofSamples(huge, huge, "abc"));
    QVERIFY(!engine::Bitmap::ofSamples(9, 2, "abc"));
    QVERIFY(engine::Bitmap::ofSamples(9, 2, "abcd"));
}

void TestJbig2::samples()
{
    const auto bitmap = engine::Bitmap::ofSamples(9, 2, std::string_view("\x0F\xFF\xA0\x00?", 5));
    QVERIFY(bitmap);
    QCOMPARE(bitmap->row(0)[0], quint8(0xF0));
    QCOMPARE(bitmap->row(0)[1], quint8(0x00));
    QCOMPARE(bitmap->row(1)[0], quint8(0x5F));
    QCOMPARE(bitmap->row(1)[1], quint8(0x80));
    QCOMPARE(bitmap->samples(), std::string("\x0F\xFF\xA0\x7F"));
}

// What a PDF stream holds: no file's head, and nothing after the region.
void TestJbig2::container()
{
    const QByteArray stream =
        QByteArray::fromStdString(engine::encodeJbig2(solid(0x102, 3, false)));
    QCOMPARE(stream.left(11).toHex(), QByteArray("0000000030000100000013"));
    QCOMPARE(stream.mid(11, 19).toHex(), QByteArray("00000102000000030000000000000000010000"));
    QCOMPARE(stream.mid(30, 7).toHex(), QByteArray("00000001270001"));
    QCOMPARE(stream.mid(37, 4).toHex().toInt(nullptr, 16), stream.size() - 41);
    QCOMPARE(stream.mid(41, 17).toHex(), QByteArray("0000010200000003000000000000000000"));
    QVERIFY(stream.endsWith("\xFF\xAC"));
}

void TestJbig2::roundTrip_data()
{
    QTest::addColumn<Jbig2Decoder>("decode");
    QTest::addColumn<Bitmaps>("bitmaps");
    const std::pair<const char *, Jbig2Decoder> decoders[] = {
        {"jbig2dec", decodedByJbig2dec},
        {"poppler", decodedByPoppler},
        {"ghostscript", decodedByGhostscript}};
    const std::pair<const char *, Bitmaps> families[] = {{"widths", everyWidth()},
                                                         {"densities", everyDensity()},
                                                         {"solid", solids()},
                                                         {"texts", texts()},
                                                         {"patterns", patterns()}};
    for (const auto &[decoder, decode] : decoders) {
        for (const auto &[family, bitmaps] : families)
            QTest::addRow("%s, %s", decoder, family) << decode << bitmaps;
    }
}

void TestJbig2::roundTrip()
{
    QFETCH(Jbig2Decoder, decode);
    QFETCH(Bitmaps, bitmaps);
    QTemporaryDir folder;
    QList<Jbig2Stream> streams;
    for (const engine::Bitmap &bitmap : bitmaps)
        streams << encoded(bitmap);
    QCOMPARE(firstDifference(bitmaps, decode(streams, folder.path())), -1);
}

// Each of the codings of which the best is taken.
void TestJbig2::codings_data()
{
    QTest::addColumn<int>("pattern");
    QTest::addColumn<bool>("typical");
    QTest::addColumn<unsigned>("period");
    QTest::newRow("16 neighbours") << 0 << false << 0U;
    QTest::newRow("16 neighbours, typical rows") << 0 << true << 0U;
    QTest::newRow("13 neighbours") << 1 << false << 0U;
    QTest::newRow("13 neighbours, typical rows") << 1 << true << 0U;
    QTest::newRow("period 5") << 0 << false << 5U;
    QTest::newRow("period 8, typical rows") << 0 << true << 8U;
    QTest::newRow("period 63") << 0 << false << 63U;
    QTest::newRow("period 127, typical rows") << 0 << true << 127U;
}

void TestJbig2::codings()
{
    QFETCH(int, pattern);
    QFETCH(bool, typical);
    QFETCH(unsigned, period);
    const Bitmaps bitmaps = everyWidth() + everyDensity() + solids() + texts() + patterns();
    QTemporaryDir folder;
    QList<Jbig2Stream> streams;
    for (const engine::Bitmap &bitmap : bitmaps)
        streams << Jbig2Stream{engine::encodeJbig2(bitmap, {pattern, typical, period}),
                               bitmap.width(), bitmap.height()};
    QCOMPARE(firstDifference(bitmaps, decodedByJbig2dec(streams, folder.path())), -1);
    QCOMPARE(firstDifference(bitmaps, decodedByPoppler(streams, folder.path())), -1);
}

void TestJbig2::halftones()
{
    QRandomGenerator random(6);
    QCOMPARE(engine::halftonePeriod(noise(500, 500, 50, random)), 0U);
    QCOMPARE(engine::halftonePeriod(solid(500, 500, true)), 0U);
    QCOMPARE(engine::halftonePeriod(solid(3, 3, true)), 0U);
    for (const unsigned period : {5U, 8U, 11U, 30U}) {
        const engine::Bitmap bitmap = halftone(1000, 500, period);
        const unsigned found = engine::halftonePeriod(bitmap);
        QVERIFY(found != 0);
        QCOMPARE(found % period, 0U);
        QVERIFY(engine::encodeJbig2(bitmap).size() <
                engine::encodeJbig2(bitmap, {0, false}).size());
    }
}

// On a drawing, a page of small text, and a large one, none is larger than what each coding makes.
void TestJbig2::best()
{
    QRandomGenerator random(5);
    const Bitmaps bitmaps = {
        drawn(3000, 1000, [](quint32 x, quint32 y) { return x / 9 % 2 == y / 99 % 2; }),
        text(200, 100, random), text(2000, 2000, random)};
    for (const engine::Bitmap &bitmap : bitmaps) {
        const size_t best = engine::encodeJbig2(bitmap).size();
        for (const engine::RegionCoding coding :
             {engine::RegionCoding{0, false}, {0, true}, {1, false}})
            QVERIFY(best <= engine::encodeJbig2(bitmap, coding).size());
    }
}

QTEST_GUILESS_MAIN(TestJbig2)
#include "tst_jbig2.moc"
