#include "bitmaps.h"
#include "engine/formats/faxdecoder.h"

#include <QTemporaryDir>
#include <QTest>

class TestFax : public QObject
{
    Q_OBJECT

private slots:
    void decode_data();
    void decode();
    void byHand_data();
    void byHand();
    void damaged();
    void random();
};

namespace {

constexpr auto undamaged = "/K -1";

std::optional<engine::Bitmap> decoded(const QByteArray &stream, const engine::FaxLayout &layout)
{
    return engine::decodeGroup4({stream.constData(), size_t(stream.size())}, layout);
}

// Every length of a run that has a code word of its own, and those beside it, of both colours.
Bitmaps runs()
{
    Bitmaps bitmaps;
    for (const bool black : {false, true}) {
        bitmaps << drawn(6000, 300, [black](quint32 x, quint32 y) {
            // A row in between keeps the modes from taking up the runs of the row above.
            const quint32 run = y / 2 < 64 ? y / 2 : (y / 2 - 63) * 64 - 1 + y / 2 % 3;
            const quint32 begin = y % 2 == 0 ? 3000 : 0;
            return (x >= begin && x < begin + run) != black;
        });
    }
    return bitmaps;
}

Bitmaps allBitmaps()
{
    QRandomGenerator random(11);
    Bitmaps bitmaps = runs();
    for (quint32 width = 1; width <= 70; ++width)
        bitmaps << noise(width, width % 5 + 1, 30, random);
    for (quint32 density = 0; density <= 100; density += 4)
        bitmaps << noise(1000 + density, 60, density, random);
    for (int i = 0; i < 40; ++i)
        bitmaps << anyBitmap(3000, 200, random);
    return bitmaps << text(2480, 3508, random) << solid(20000, 3, true) << solid(20000, 3, false);
}

} // namespace

void TestFax::decode_data()
{
    QTest::addColumn<QByteArray>("parameters");
    QTest::addColumn<bool>("blackIs1");
    QTest::addColumn<bool>("aligned");
    QTest::newRow("black is 0") << QByteArray("/K -1") << false << false;
    QTest::newRow("black is 1") << QByteArray("/K -1 /BlackIs1 true") << true << false;
    QTest::newRow("aligned") << QByteArray("/K -1 /EncodedByteAlign true") << false << true;
    QTest::newRow("no end of block") << QByteArray("/K -1 /EndOfBlock false") << false << false;
}

void TestFax::decode()
{
    QFETCH(QByteArray, parameters);
    QFETCH(bool, blackIs1);
    QFETCH(bool, aligned);
    QTemporaryDir folder;
    const Bitmaps bitmaps = allBitmaps();
    const QList<QByteArray> streams = encodedByGhostscript(bitmaps, parameters, folder.path());
    QCOMPARE(streams.size(), bitmaps.size());
    for (qsizetype i = 0; i < bitmaps.size(); ++i) {
        const auto bitmap =
            decoded(streams[i], {bitmaps[i].width(), bitmaps[i].height(), blackIs1, aligned});
        QVERIFY2(bitmap == bitmaps[i], qPrintable(QString::number(i)));
    }
}

void TestFax::byHand_data()
{
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<quint32>("columns");
    QTest::addColumn<quint32>("rows");
    QTest::addColumn<bool>("sound");
    const auto row = [](const char *name, const char *hex, quint32 columns, quint32 rows,
                        bool sound) {
        QTest::newRow(name) << QByteArray::fromHex(hex) << columns << rows << sound;
    };
    // A row of eight white pixels is one bit.
    row("white", "f0", 8, 4, true);
    row("ends too early", "f0", 8, 5, false);
    row("end of block too early", "e00100100", 8, 4, false);
    row("what follows is passed over", "ffff", 8, 4, true);
    row("no rows", "", 8, 0, true);
    row("no columns", "f0", 0, 4, false);
    row("nothing", "", 8, 1, false);
    row("far more rows than bits", "f0", 8, ~0U, false);
    row("far too wide", "80", ~0U, 1, false);
    row("uncompressed mode", "03c0", 8, 1, false);
    // Horizontal mode, eight white pixels and no black ones.
    row("a run to the end", "330dc0", 8, 1, true);
    row("a run beyond the end", "330dc0", 7, 1, false);
    // Vertical mode: three left of the end twice, then at the end.
    row("not to the right", "040a", 3, 1, false);
}

void TestFax::byHand()
{
    QFETCH(QByteArray, stream);
    QFETCH(quint32, columns);
    QFETCH(quint32, rows);
    QFETCH(bool, sound);
    const auto bitmap = decoded(stream, {columns, rows, false, false});
    QCOMPARE(bitmap.has_value(), sound);
    if (bitmap)
        QVERIFY(bitmap == engine::Bitmap::blank(columns, rows));
}

// Neither a crash nor a bitmap of another size; the sanitizers watch the rest.
void TestFax::damaged()
{
    QRandomGenerator random(12);
    QTemporaryDir folder;
    Bitmaps bitmaps;
    for (int i = 0; i < 30; ++i)
        bitmaps << anyBitmap(400, 100, random);
    const QList<QByteArray> streams = encodedByGhostscript(bitmaps, undamaged, folder.path());
    QCOMPARE(streams.size(), bitmaps.size());
    int refused = 0;
    for (int round = 0; round < 20'000; ++round) {
        const auto i = qsizetype(random.bounded(quint32(streams.size())));
        QByteArray stream = streams[i];
        for (quint32 count = random.bounded(4U) + 1; count > 0; --count)
            stream[qsizetype(random.bounded(quint32(stream.size())))] = char(random.bounded(256));
        stream.truncate(qsizetype(random.bounded(8U) == 0 ? random.bounded(quint32(stream.size()))
                                                          : quint32(stream.size())));
        const auto bitmap = decoded(stream, {bitmaps[i].width(), bitmaps[i].height(),
                                             random.bounded(2) == 0, random.bounded(8) == 0});
        if (bitmap)
            QCOMPARE(std::pair(bitmap->width(), bitmap->height()),
                     std::pair(bitmaps[i].width(), bitmaps[i].height()));
        else
            ++refused;
    }
    QVERIFY(refused > 1000);
}

void TestFax::random()
{
    QRandomGenerator random(13);
    for (int round = 0; round < 20'000; ++round) {
        QByteArray stream(qsizetype(random.bounded(200U)), '\0');
        // Few zeros at first: those soon are no code word.
        for (char &byte : stream)
            byte = char(random.bounded(256) | random.bounded(256));
        const quint32 columns = random.bounded(round % 2 == 0 ? 70U : 100'000U);
        const auto bitmap = decoded(stream, {columns, random.bounded(30U), false, false});
        if (bitmap)
            QCOMPARE(bitmap->width(), columns);
    }
}

QTEST_GUILESS_MAIN(TestFax)
#include "tst_faxdecoder.moc"
