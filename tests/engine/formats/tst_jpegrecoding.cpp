// A recoded JPEG is smaller, and nobody sees another picture.
#include "jpegs.h"

#include "engine/formats/jpegrecoding.h"

#include <QTest>

using jpegs::made;
using jpegs::Recipe;

class TestJpegRecoding : public QObject
{
    Q_OBJECT

private slots:
    void same_data();
    void same();
    void small();
    void markers();
    void padding();
    void untouched_data();
    void untouched();
    void cutAnywhere();
    void damagedAnywhere();
};

namespace {

QByteArray recoded(const QByteArray &jpeg)
{
    const auto better = engine::recodedJpeg(jpeg.toStdString());
    return better ? QByteArray::fromStdString(*better) : QByteArray();
}

// With one more marker behind the start.
QByteArray withMarker(QByteArray jpeg, char marker, const QByteArray &data)
{
    const auto size = data.size() + 2;
    return jpeg.insert(2, QByteArray("\xff") + marker + char(size >> 8) + char(size) + data);
}

qsizetype lastScan(const QByteArray &jpeg)
{
    return jpeg.lastIndexOf("\xff\xda");
}

} // namespace

void TestJpegRecoding::same_data()
{
    QTest::addColumn<Recipe>("recipe");
    QTest::newRow("YCbCr, JFIF") << Recipe{};
    QTest::newRow("YCbCr, not a marker") << Recipe{.jfif = false};
    QTest::newRow("YCbCr, Adobe") << Recipe{.jfif = false, .adobe = true};
    QTest::newRow("YCbCr, both markers") << Recipe{.adobe = true};
    QTest::newRow("YCbCr, all of each") << Recipe{.sampling = 1};
    QTest::newRow("RGB, Adobe says so")
        << Recipe{.coded = JCS_RGB, .sampling = 1, .jfif = false, .adobe = true};
    QTest::newRow("RGB, its numbers say so")
        << Recipe{.coded = JCS_RGB, .sampling = 1, .jfif = false};
    QTest::newRow("gray") << Recipe{.colours = JCS_GRAYSCALE, .coded = JCS_GRAYSCALE};
    QTest::newRow("gray, not a marker")
        << Recipe{.colours = JCS_GRAYSCALE, .coded = JCS_GRAYSCALE, .jfif = false};
    QTest::newRow("CMYK, Adobe") << Recipe{
        .colours = JCS_CMYK, .coded = JCS_CMYK, .sampling = 1, .jfif = false, .adobe = true};
    QTest::newRow("CMYK, not a marker")
        << Recipe{.colours = JCS_CMYK, .coded = JCS_CMYK, .sampling = 1, .jfif = false};
    QTest::newRow("YCCK, Adobe") << Recipe{
        .colours = JCS_CMYK, .coded = JCS_YCCK, .jfif = false, .adobe = true};
    QTest::newRow("YCCK, not a marker")
        << Recipe{.colours = JCS_CMYK, .coded = JCS_YCCK, .jfif = false};
    QTest::newRow("restart markers") << Recipe{.restartInterval = 3};
    QTest::newRow("one row") << Recipe{.width = 2000, .height = 1};
    QTest::newRow("one column") << Recipe{.width = 1, .height = 2000};
    QTest::newRow("large") << Recipe{.width = 640, .height = 480};
}

void TestJpegRecoding::same()
{
    QFETCH(Recipe, recipe);
    const QByteArray jpeg = made(recipe);
    const QByteArray better = recoded(jpeg);
    QVERIFY(!better.isEmpty());
    QVERIFY2(better.size() < jpeg.size(), qPrintable(QString::number(better.size())));
    const auto before = jpegs::read(jpeg);
    const auto after = jpegs::read(better);
    QVERIFY(before == after);
    QCOMPARE(after.warnings, 0);
    QVERIFY(recoded(better).isEmpty()); // no smaller the second time
}

void TestJpegRecoding::small()
{
    const auto dot = jpegs::read(recoded(made({.width = 8, .height = 8})));
    QVERIFY(!dot.progressive); // whose scans have a header each
    QVERIFY(jpegs::read(recoded(made({.width = 640, .height = 480}))).progressive);
}

// The ones that readers of a PDF know stay; a preview in the JFIF marker goes.
void TestJpegRecoding::markers()
{
    const QByteArray plain = made({.adobe = true, .comment = "by hand"});
    QByteArray jpeg = withMarker(plain, '\xe1', "Exif\0\0 and more");
    jpeg = withMarker(jpeg, '\xe2', "ICC_PROFILE");
    QCOMPARE(jpegs::read(jpeg).markers, 5);
    const auto after = jpegs::read(recoded(jpeg));
    QCOMPARE(after.markers, 2);
    QVERIFY(after == jpegs::read(plain));

    const QByteArray jfif("JFIF\0\1\1\1\0\x48\0\x48\2\1", 14);
    const QByteArray preview = jfif + QByteArray(6, 'x');
    const QByteArray pictured = withMarker(made({.jfif = false}), '\xe0', preview);
    const QByteArray better = recoded(pictured);
    QVERIFY(jpegs::read(better) == jpegs::read(pictured));
    QVERIFY(!better.contains("xxxxxx"));
}

void TestJpegRecoding::padding()
{
    const QByteArray jpeg = made({});
    QCOMPARE(recoded(jpeg + '\n'), recoded(jpeg));
    QCOMPARE(recoded(jpeg + QByteArray(3, '\0')), recoded(jpeg));
    QCOMPARE(recoded(jpeg + "\xff\xd9"), recoded(jpeg));
}

void TestJpegRecoding::untouched_data()
{
    const QByteArray jpeg = made({});
    const QByteArray progressive = made({.progressive = true});
    QByteArray deep = jpeg;
    deep[deep.indexOf("\xff\xc0") + 4] = 12;
    QTest::addColumn<QByteArray>("jpeg");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no JPEG") << QByteArray("no JPEG");
    QTest::newRow("arithmetic") << made({.arithmetic = true});
    QTest::newRow("12 bits") << deep;
    QTest::newRow("no end") << jpeg.chopped(2);
    QTest::newRow("half") << jpeg.first(jpeg.size() / 2);
    QTest::newRow("another one behind it") << jpeg + jpeg;
    QTest::newRow("something before it") << "\n" + jpeg;
    // A reader smooths such a picture, which it would not do any more.
    QTest::newRow("last scan missing") << progressive.first(lastScan(progressive)) + "\xff\xd9";
}

void TestJpegRecoding::untouched()
{
    QFETCH(QByteArray, jpeg);
    QCOMPARE(recoded(jpeg), QByteArray());
}

void TestJpegRecoding::cutAnywhere()
{
    const QByteArray jpeg = made({});
    for (qsizetype size = 0; size < jpeg.size(); ++size)
        QVERIFY2(recoded(jpeg.first(size)).isEmpty(), qPrintable(QString::number(size)));
}

// Whatever a byte becomes: what is recoded is what libjpeg read without complaint.
void TestJpegRecoding::damagedAnywhere()
{
    const QByteArray jpeg = made({});
    int taken = 0;
    for (qsizetype place = 2; place < jpeg.size(); place += 3) {
        QByteArray damaged = jpeg;
        damaged[place] = char(damaged[place] ^ 0x55);
        const QByteArray better = recoded(damaged);
        if (better.isEmpty())
            continue;
        ++taken;
        const auto before = jpegs::read(damaged);
        QVERIFY(before == jpegs::read(better));
        QCOMPARE(before.warnings, 0);
    }
    QVERIFY(taken > 0);
}

QTEST_GUILESS_MAIN(TestJpegRecoding)
#include "tst_jpegrecoding.moc"
