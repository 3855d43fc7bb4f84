// Whether a document that was written anew still shows and says the same.
#include "readings.h"

#include "engine/proof/findings.h"
#include "engine/proof/lettercomparison.h"
#include "engine/proof/rewrittenpicture.h"

#include <QTest>

using namespace engine;

namespace {

constexpr int side = 64;

Picture pictureOf(const Level &level, int width = side, int height = side)
{
    return drawing(level, width, height);
}

// Print on white, with strokes of a pixel every third one; the margin and the last quarter are
// empty.
bool isPrint(int x, int y)
{
    return x >= 4 && x < 60 && y < 48 && y % 16 >= 6 && y % 16 < 11 && x % 3 == 0;
}

int drawn(int x, int y, int)
{
    return isPrint(x, y) ? 40 : 255;
}

} // namespace

class TestLikeness : public QObject
{
    Q_OBJECT

private slots:
    void sound_data();
    void sound();
    void damaged_data();
    void damaged();
    void sizes();
    void letters_data();
    void letters();
    void blame();
};

void TestLikeness::sound_data()
{
    QTest::addColumn<Level>("level");
    QTest::addColumn<bool>("withOwnFonts");
    QTest::newRow("the same") << Level(drawn) << true;
    for (const int across : {-1, 0, 1}) {
        for (const int down : {-1, 0, 1})
            QTest::addRow("moved by %d, %d", across, down)
                << Level([=](int x, int y, int) { return drawn(x + across, y + down, 0); }) << true;
    }
    QTest::newRow("half a pixel further")
        << Level([](int x, int y, int) { return (drawn(x, y, 0) + drawn(x, y + 1, 0)) / 2; })
        << true;
    QTest::newRow("a little darker")
        << Level([](int x, int y, int) { return drawn(x, y, 0) - 20; }) << true;
    QTest::newRow("converted colours")
        << Level([](int x, int y, int channel) { return drawn(x, y, 0) - (channel == 2 ? 55 : 5); })
        << true;
    QTest::newRow("dots, as of another font") << Level([](int x, int y, int) {
        return x % 16 / 2 == 2 && y % 16 / 2 == 0 ? 0 : drawn(x, y, 0);
    }) << false;
}

void TestLikeness::sound()
{
    QFETCH(Level, level);
    QFETCH(bool, withOwnFonts);
    QVERIFY(showsTheSame(pictureOf(level), pictureOf(drawn), withOwnFonts));
    QVERIFY(showsTheSame(pictureOf(drawn), pictureOf(level), withOwnFonts));
    QVERIFY(showsTheSame(pictureOf(drawn), pictureOf(level), false));
}

void TestLikeness::damaged_data()
{
    QTest::addColumn<Level>("level");
    QTest::addColumn<bool>("withOtherFonts"); // it is seen with these, too
    QTest::newRow("blank") << Level([](int, int, int) { return 255; }) << true;
    for (const int place : {16, 18, 19, 52, 55}) {
        QTest::addRow("a line more, at %d", place)
            << Level([=](int x, int y, int) { return y == place ? 0 : drawn(x, y, 0); })
            << (place > 48);
        QTest::addRow("an upright line more, at %d", place)
            << Level([=](int x, int y, int) { return x == place ? 0 : drawn(x, y, 0); }) << true;
    }
    QTest::newRow("a line of print is lost")
        << Level([](int x, int y, int) { return y / 16 == 2 ? 255 : drawn(x, y, 0); }) << true;
    QTest::newRow("one more") << Level([](int x, int y, int) {
        return y % 16 >= 12 && y % 16 < 16 && x % 3 == 0 ? 40 : drawn(x, y, 0);
    }) << true;
    QTest::newRow("three letters are lost")
        << Level([](int x, int y, int) { return y / 16 == 2 && x / 8 == 3 ? 255 : drawn(x, y, 0); })
        << false;
    QTest::newRow("a dot is lost")
        << Level([](int x, int y, int) { return x / 2 == 10 && y / 2 == 8 ? 0 : drawn(x, y, 0); })
        << false;
    QTest::newRow("darker") << Level([](int x, int y, int) { return drawn(x, y, 0) - 32; }) << true;
    QTest::newRow("negative") << Level([](int x, int y, int) { return 255 - drawn(x, y, 0); })
                              << true;
    QTest::newRow("another colour") << Level([](int x, int y, int channel) {
        return channel == 2 ? drawn(x, y, 0) - 100 : drawn(x, y, 0);
    }) << true;
    QTest::newRow("three pixels further")
        << Level([](int x, int y, int) { return drawn(x, y + 3, 0); }) << false;
}

void TestLikeness::damaged()
{
    QFETCH(Level, level);
    QFETCH(bool, withOtherFonts);
    QVERIFY(!showsTheSame(pictureOf(level), pictureOf(drawn), true));
    QVERIFY(!showsTheSame(pictureOf(drawn), pictureOf(level), true));
    if (withOtherFonts)
        QVERIFY(!showsTheSame(pictureOf(level), pictureOf(drawn), false));
}

void TestLikeness::sizes()
{
    const Picture page = pictureOf(drawn);
    QVERIFY(showsTheSame(pictureOf(drawn, side + 1), page, true));
    QVERIFY(showsTheSame(pictureOf(drawn, side, side - 1), page, true));
    QVERIFY(!showsTheSame(pictureOf(drawn, side + 2), page, true));
    QVERIFY(!showsTheSame(pictureOf(drawn, side, side - 2), page, true));
    const Level empty = [](int, int, int) { return 255; };
    QVERIFY(showsTheSame(pictureOf(empty, 1, 1), pictureOf(empty, 1, 1), true));
    QVERIFY(!showsTheSame(pictureOf(empty, 1, 1), pictureOf([](int, int, int) { return 0; }, 1, 1),
                          true));
}

void TestLikeness::letters_data()
{
    QTest::addColumn<QByteArray>("copy");
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<QList<int>>("pages");
    using Pages = QList<int>;
    const QByteArray page = QByteArray("The parish holds some pages.\n").repeated(50) + '\f';
    const QByteArray document = page.repeated(4);
    const auto changed = [&](const QByteArray &end, int from = 0) {
        return page.repeated(3) + page.chopped(from + 1) + end + '\f';
    };
    QTest::newRow("none") << QByteArray() << QByteArray() << Pages{};
    QTest::newRow("the same") << document << document << Pages{};
    QTest::newRow("another order")
        << QByteArray("one two\f") << QByteArray("two\none\f") << Pages{};
    QTest::newRow("other blanks") << QByteArray("on e\xE2\x80\x89two\xC2\xA0\f")
                                  << QByteArray("one t w o\n\f") << Pages{};
    QTest::newRow("marks of direction")
        << QByteArray("\xE2\x80\xAB\xD9\x85\xE2\x80\xAC\f") << QByteArray("\xD9\x85\f") << Pages{};
    QTest::newRow("eight letters of many") << changed("abcdefgh") << document << Pages{};
    QTest::newRow("a hundredth of a page") << changed("----((((====") << document << Pages{};
    QTest::newRow("more than that") << changed("----((((====))))") << document << Pages{3};
    QTest::newRow("nine plain letters") << changed("abcdefghI") << document << Pages{3};
    QTest::newRow("nine digits") << changed("012345678") << document << Pages{3};
    QTest::newRow("a line is lost") << changed({}, 29) << document << Pages{3};
    QTest::newRow("a line more") << changed("Another line, not there before.") << document
                                 << Pages{3};
    QTest::newRow("other letters")
        << QByteArray(document).replace("some", "same") << page.repeated(4) << Pages{0, 1, 2, 3};
    QTest::newRow("one of few") << QByteArray("one\ftwo\f") << QByteArray("one\ftwa\f") << Pages{1};
    QTest::newRow("of another writing")
        << QByteArray("\xD9\x85\xD8\xAF\f") << QByteArray("\xD9\x85\xD9\x85\f") << Pages{0};
    QTest::newRow("a page less") << QByteArray("a\f") << QByteArray("a\fb\f") << Pages{1};
    QTest::newRow("an empty one less") << QByteArray("a\f") << QByteArray("a\f\f") << Pages{1};
    QTest::newRow("an empty one more") << QByteArray("a\f\f") << QByteArray("a\f") << Pages{1};
    QTest::newRow("a little on each page")
        << QByteArray("abcdefgh\f").repeated(9) << QByteArray("abcdefg\f").repeated(9)
        << Pages{0, 1, 2, 3, 4, 5, 6, 7, 8};
}

void TestLikeness::letters()
{
    QFETCH(QByteArray, copy);
    QFETCH(QByteArray, original);
    QFETCH(QList<int>, pages);
    const auto found = pagesOfOtherLetters(File(copy), File(original));
    QCOMPARE(QList<int>(found.begin(), found.end()), pages);
}

// The whole page is, and only where it is not the same.
void TestLikeness::blame()
{
    const std::vector<PageView> pages = {{0, {0, 0, 400, 400}, 0}, {1, {0, 0, 400, 400}, 0}};
    const std::vector<TouchedPart> parts = {{PartKind::Image, 1, 0, 0, 0, 9, 9},
                                            {PartKind::Image, 2, 1, 0, 0, 9, 9}};
    const QByteArray sound = asPpm(pictureOf(drawn));
    const File original(sound + sound);
    const File darker(asPpm(pictureOf([](int x, int y, int) { return drawn(x, y, 0) - 9; })) +
                      sound);
    const File copy(sound + asPpm(pictureOf([](int, int, int) { return 255; })));
    for (const Likeness likeness : {Likeness::Rewritten, Likeness::RewrittenOtherFonts}) {
        QVERIFY(comparePictures({darker, pages}, {original, pages}, parts, likeness).isNone());
        QVERIFY(comparePictures({copy, pages}, {original, pages}, parts, likeness).failed ==
                std::set<int>{2});
        QVERIFY(comparePictures({File(sound), pages}, {original, pages}, parts, likeness).failed ==
                std::set<int>{2});
        QVERIFY(compareTexts(File("ab c\fd\f"), File("bac\fd\f"), parts, likeness).isNone());
        QVERIFY(compareTexts(File("abc\fe\f"), File("abc\fd\f"), parts, likeness).failed ==
                std::set<int>{2});
        QVERIFY(compareTexts(File("a\fd\f\f"), File("a\fd\f"), parts, likeness).unexplained);
    }
    QVERIFY(!comparePictures({darker, pages}, {original, pages}, parts).isNone());
    QVERIFY(!compareTexts(File("ab c\fd\f"), File("bac\fd\f"), parts).isNone());
}

QTEST_GUILESS_MAIN(TestLikeness)
#include "tst_likeness.moc"
