// What is found where two texts, or two pictures, are not the same.
#include "readings.h"

#include "engine/proof/findings.h"
#include "engine/proof/picturecomparison.h"
#include "engine/proof/placement.h"
#include "engine/proof/textcomparison.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace engine;

namespace {

constexpr int side = 40;

Picture pictureOf(const Level &level, int width = side)
{
    return drawing(level, width, side);
}

// Something of everything: a slope, lines, dots, and a colour.
int drawn(int x, int y, int channel)
{
    if (y % 8 == 0)
        return 20;
    if (x % 6 == 1 && y % 6 == 3)
        return 90;
    return 120 + 3 * x - (channel == 2 ? 60 : 0);
}

bool isIn(int x, int y, const PixelRectangle &place)
{
    return x >= place.left && x < place.right && y >= place.top && y < place.bottom;
}

Picture with(const PixelRectangle &place, const Level &level)
{
    return pictureOf([&](int x, int y, int channel) {
        return isIn(x, y, place) ? level(x, y, channel) : drawn(x, y, channel);
    });
}

QList<int> list(const std::set<int> &numbers)
{
    return {numbers.begin(), numbers.end()};
}

TouchedPart image(int object, int page, Box box = {0, 0, 400, 400})
{
    return {PartKind::Image, object, page, box.left, box.bottom, box.right, box.top};
}

TouchedPart font(int object, int page)
{
    return {PartKind::Font, object, page, 0, 0, 400, 400};
}

const PageView square = {.page = 0, .crop = {0, 0, 400, 400}, .rotation = 0};

} // namespace

class TestFindings : public QObject
{
    Q_OBJECT

private slots:
    void same();
    void outside_data();
    void outside();
    void inside_data();
    void inside();
    void sound_data();
    void sound();
    void otherSize();
    void whichImage();
    void place_data();
    void place();
    void placeOfNonsense();
    void noPicture_data();
    void noPicture();
    void texts_data();
    void texts();
    void countedPages();
    void blameForText();
    void blameForPicture();
    void blameForNoPicture();
    void blameOnFewerPages();
    void lines();
    void viewLines();
};

void TestFindings::same()
{
    QVERIFY(differenceOf(pictureOf(drawn), pictureOf(drawn), {}).isNone());
    QVERIFY(differenceOf(pictureOf(drawn), pictureOf(drawn), {{1, {0, 0, 40, 40}}}).isNone());
}

void TestFindings::outside_data()
{
    QTest::addColumn<PixelRectangle>("place");
    QTest::newRow("one pixel") << PixelRectangle{7, 9, 8, 10};
    QTest::newRow("the first") << PixelRectangle{0, 0, 1, 1};
    QTest::newRow("the last") << PixelRectangle{39, 39, 40, 40};
    QTest::newRow("left of the image") << PixelRectangle{19, 25, 20, 26};
    QTest::newRow("above the image") << PixelRectangle{25, 19, 26, 20};
    QTest::newRow("right of the image") << PixelRectangle{30, 25, 31, 26};
    QTest::newRow("below the image") << PixelRectangle{25, 30, 26, 31};
}

// However little it is.
void TestFindings::outside()
{
    QFETCH(PixelRectangle, place);
    const auto changed = with(place, [](int x, int y, int channel) {
        return drawn(x, y, channel) + (channel == 1 ? 1 : 0);
    });
    const auto difference = differenceOf(changed, pictureOf(drawn), {{7, {20, 20, 30, 30}}});
    QVERIFY(difference.elsewhere);
    QVERIFY(difference.images.empty());
}

void TestFindings::inside_data()
{
    QTest::addColumn<PixelRectangle>("place");
    QTest::addColumn<Level>("level");
    const PixelRectangle whole = {20, 20, 36, 36};
    const Level negative = [](int x, int y, int channel) { return 255 - drawn(x, y, channel); };
    QTest::newRow("negative") << whole << negative;
    QTest::newRow("blank") << whole << Level([](int, int, int) { return 255; });
    QTest::newRow("black") << whole << Level([](int, int, int) { return 0; });
    QTest::newRow("mirrored") << whole << Level([](int x, int y, int channel) {
        return drawn(56 - x, y + 4, channel);
    });
    QTest::newRow("lighter") << whole << Level([](int x, int y, int channel) {
        return std::min(255, drawn(x, y, channel) + 14);
    });
    QTest::newRow("another colour")
        << whole << Level([](int x, int y, int channel) { return drawn(x, y, 2 - channel); });
    QTest::newRow("a line is lost")
        << PixelRectangle{20, 24, 36, 25} << Level([](int, int, int) { return 180; });
    QTest::newRow("a line more") << PixelRectangle{20, 28, 36, 29}
                                 << Level([](int, int, int) { return 0; });
    QTest::newRow("a dot more") << PixelRectangle{26, 29, 27, 30}
                                << Level([](int, int, int) { return 0; });
    QTest::newRow("a block is lighter")
        << PixelRectangle{24, 28, 28, 32} << Level([](int x, int y, int channel) {
               return std::min(255, drawn(x, y, channel) + 50);
           });
    QTest::newRow("a corner is lost")
        << PixelRectangle{32, 32, 36, 36} << Level([](int, int, int) { return 255; });
}

void TestFindings::inside()
{
    QFETCH(PixelRectangle, place);
    QFETCH(Level, level);
    const auto difference =
        differenceOf(with(place, level), pictureOf(drawn), {{7, {20, 20, 36, 36}}});
    QCOMPARE(list(difference.images), QList<int>{7});
    QVERIFY(!difference.elsewhere);
}

void TestFindings::sound_data()
{
    QTest::addColumn<Level>("level");
    QTest::newRow("noise") << Level([](int x, int y, int channel) {
        return drawn(x, y, channel) + (x * 7 + y * 5 + channel) % 21 - 10;
    });
    QTest::newRow("a little lighter")
        << Level([](int x, int y, int channel) { return std::min(255, drawn(x, y, channel) + 6); });
    QTest::newRow("softer") << Level([](int x, int y, int channel) {
        return (drawn(x, y, channel) * 6 + drawn(x, y + 1, channel) + drawn(x, y - 1, channel)) / 8;
    });
    QTest::newRow("a sixth of a pixel further") << Level([](int x, int y, int channel) {
        return (drawn(x, y, channel) * 5 + drawn(x, y + 1, channel)) / 6;
    });
}

void TestFindings::sound()
{
    QFETCH(Level, level);
    const PixelRectangle place = {20, 20, 36, 36};
    const auto difference = differenceOf(with(place, level), pictureOf(drawn), {{7, place}});
    QVERIFY(difference.images.empty());
    QVERIFY(!difference.elsewhere);
}

void TestFindings::otherSize()
{
    const auto difference =
        differenceOf(pictureOf(drawn), pictureOf(drawn, side + 1), {{7, {0, 0, 40, 40}}});
    QVERIFY(difference.elsewhere);
}

// Every one whose place holds the pixels, and none beside it.
void TestFindings::whichImage()
{
    const auto changed = with({8, 8, 12, 12}, [](int, int, int) { return 0; });
    const std::vector<PlacedImage> images = {
        {1, {0, 0, 20, 20}},  {2, {10, 10, 40, 40}}, {3, {20, 0, 40, 20}},
        {4, {0, 20, 20, 40}}, {5, {-90, -90, 9, 9}},
    };
    const auto difference = differenceOf(changed, pictureOf(drawn), images);
    QCOMPARE(list(difference.images), (QList<int>{1, 2, 5}));
}

void TestFindings::place_data()
{
    QTest::addColumn<int>("rotation");
    QTest::addColumn<Box>("crop");
    QTest::addColumn<PixelRectangle>("place");
    const Box whole = {0, 0, 200, 100};
    // The image lies at the bottom left: 20 to 60 points from the left, 10 to 30 from the bottom.
    QTest::newRow("upright") << 0 << whole << PixelRectangle{18, 68, 62, 92};
    QTest::newRow("90") << 90 << whole << PixelRectangle{8, 18, 32, 62};
    QTest::newRow("180") << 180 << whole << PixelRectangle{138, 8, 182, 32};
    QTest::newRow("270") << 270 << whole << PixelRectangle{68, 138, 92, 182};
    QTest::newRow("cropped") << 0 << Box{10, 5, 210, 105} << PixelRectangle{8, 73, 52, 97};
    QTest::newRow("crop in it") << 0 << Box{30, 20, 230, 120} << PixelRectangle{0, 88, 32, 100};
    QTest::newRow("left of the crop") << 0 << Box{300, 0, 500, 100} << PixelRectangle{0, 68, 0, 92};
    QTest::newRow("right of it, above")
        << 0 << Box{-300, -200, -100, -100} << PixelRectangle{200, 0, 200, 0};
    QTest::newRow("below zero") << 0 << Box{-40, -20, 160, 80} << PixelRectangle{58, 48, 102, 72};
    QTest::newRow("half the size") << 0 << Box{0, 0, 400, 200} << PixelRectangle{8, 83, 32, 97};
}

// A page of 200 by 100 pixels, or of 100 by 200 where it is turned.
void TestFindings::place()
{
    QFETCH(int, rotation);
    QFETCH(Box, crop);
    QFETCH(PixelRectangle, place);
    const bool isOnItsSide = rotation % 180 != 0;
    const auto found = placeOf(image(1, 0, {20, 10, 60, 30}), {0, crop, rotation},
                               isOnItsSide ? 100 : 200, isOnItsSide ? 200 : 100);
    QCOMPARE(found.left, place.left);
    QCOMPARE(found.top, place.top);
    QCOMPARE(found.right, place.right);
    QCOMPARE(found.bottom, place.bottom);
}

void TestFindings::placeOfNonsense()
{
    const PixelRectangle whole = {0, 0, 30, 20};
    QVERIFY(placeOf(image(1, 0), {0, {5, 5, 5, 5}}, 30, 20) == whole);
    const double none = std::numeric_limits<double>::quiet_NaN();
    QVERIFY(placeOf(image(1, 0, {none, 0, 1, 1}), square, 30, 20) == whole);
    QVERIFY(placeOf(image(1, 0, {-1e300, -1e300, 1e300, 1e300}), square, 30, 20) == whole);
}

void TestFindings::noPicture_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray sound = asPpm(pictureOf(drawn));
    QTest::newRow("cut off") << sound.chopped(1);
    QTest::newRow("in the header") << sound.left(8);
    QTest::newRow("gray") << QByteArray("P5\n1 1\n255\n0");
    QTest::newRow("no numbers") << QByteArray("P6\nx 1\n255\n000");
    QTest::newRow("no pixels") << QByteArray("P6\n0 1\n255\n");
    QTest::newRow("less than none") << QByteArray("P6\n-1 -1\n255\n000");
    QTest::newRow("16 bits") << QByteArray("P6\n1 1\n65535\n000000");
    QTest::newRow("too many") << QByteArray("P6\n2000000000 2000000000\n255\n");
    QTest::newRow("a number too large") << QByteArray("P6\n99999999999 1\n255\n");
    QTest::newRow("rubbish") << QByteArray(200, 'x');
}

void TestFindings::noPicture()
{
    QFETCH(QByteArray, bytes);
    const File file(bytes);
    PictureFile pictures(file);
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, (void)pictures.next());
}

void TestFindings::texts_data()
{
    QTest::addColumn<QByteArray>("copy");
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<QList<int>>("pages");
    const QByteArray large(200'000, 'x');
    using Pages = QList<int>;
    QTest::newRow("none") << QByteArray() << QByteArray() << Pages{};
    QTest::newRow("same") << QByteArray("a\fb\f") << QByteArray("a\fb\f") << Pages{};
    QTest::newRow("large") << large + '\f' + large << large + '\f' + large << Pages{};
    QTest::newRow("a comma") << QByteArray("a\fb c\fd\f") << QByteArray("a\fb, c\fd\f") << Pages{1};
    QTest::newRow("a letter") << QByteArray("ab\fc\f") << QByteArray("ac\fc\f") << Pages{0};
    QTest::newRow("blanks") << QByteArray("a b\f") << QByteArray("a  b\f") << Pages{0};
    QTest::newRow("a page less") << QByteArray("a\f") << QByteArray("a\fb\f") << Pages{1};
    QTest::newRow("an empty one less") << QByteArray("a\f") << QByteArray("a\f\f") << Pages{1};
    QTest::newRow("a page more") << QByteArray("a\fb\f") << QByteArray("a\f") << Pages{1};
    QTest::newRow("no end") << QByteArray("a\fb") << QByteArray("a\fb\f") << Pages{1};
    QTest::newRow("the end") << large + "\fb" << large + "\fc" << Pages{1};
    QTest::newRow("two") << QByteArray("a\fb\fc\f") << QByteArray("b\fb\fa\f") << Pages{0, 2};
}

void TestFindings::texts()
{
    QFETCH(QByteArray, copy);
    QFETCH(QByteArray, original);
    QFETCH(QList<int>, pages);
    const auto found = pagesOfOtherText(File(copy), File(original));
    QCOMPARE(QList<int>(found.begin(), found.end()), pages);
}

void TestFindings::countedPages()
{
    QCOMPARE(countPages(File("")), 0);
    QCOMPARE(countPages(File("a")), 0);
    QCOMPARE(countPages(File("a\f\fb\f")), 3);
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, (void)countPages(-1));
}

void TestFindings::blameForText()
{
    const File copy("a\fb\fc\f");
    const File original("a\fB\fC\f");
    const auto found =
        compareTexts(copy, original, {font(1, 0), font(2, 1), image(3, 1), image(4, 2)});
    QCOMPARE(list(found.failed), (QList<int>{2, 4}));
    QVERIFY(!found.unexplained);
    QVERIFY(compareTexts(copy, original, {font(2, 1)}).unexplained);
    QVERIFY(compareTexts(copy, copy, {}).isNone());
}

void TestFindings::blameForPicture()
{
    const QByteArray sound = asPpm(pictureOf(drawn));
    const Level black = [](int, int, int) { return 0; };
    const File original(sound + sound);
    const File copy(sound + asPpm(with({0, 0, 10, 10}, black)));
    const std::vector<PageView> pages = {{4, square.crop}, {5, square.crop}};
    const auto failed = [&](const std::vector<TouchedPart> &parts) {
        return list(comparePictures({copy, pages}, {original, pages}, parts).failed);
    };
    const Box topLeft = {0, 300, 100, 400};
    const Box elsewhere = {200, 0, 400, 100};
    QCOMPARE(failed({image(1, 5, topLeft), image(2, 5, elsewhere), font(3, 5)}), QList<int>{1});
    QCOMPARE(failed({image(2, 5, elsewhere), font(3, 5), font(4, 4)}), QList<int>{3});
    QCOMPARE(failed({image(1, 4, topLeft), image(2, 5, elsewhere)}), QList<int>{2});
    QVERIFY(comparePictures({copy, pages}, {original, pages}, {image(1, 4, topLeft)}).unexplained);
    QVERIFY(comparePictures({original, pages}, {original, pages}, {}).isNone());
}

void TestFindings::blameForNoPicture()
{
    const QByteArray sound = asPpm(pictureOf(drawn));
    const std::vector<PageView> pages = {{0, square.crop}, {1, square.crop}};
    const std::vector<TouchedPart> parts = {image(1, 0), image(2, 1), font(3, 1)};
    const File whole(sound + sound);
    for (const QByteArray &half : {sound, sound + "P6\n", sound + sound.chopped(1)}) {
        const File file(half);
        QCOMPARE(list(comparePictures({file, pages}, {whole, pages}, parts).failed),
                 (QList<int>{2, 3}));
        QCOMPARE(list(comparePictures({whole, pages}, {file, pages}, parts).failed),
                 (QList<int>{2, 3}));
    }
    const File rubbish("x");
    const auto none = comparePictures({rubbish, pages}, {whole, pages}, parts);
    QCOMPARE(list(none.failed), (QList<int>{1, 2, 3}));
}

// The original may have been drawn before it was known what is made smaller.
void TestFindings::blameOnFewerPages()
{
    const QByteArray sound = asPpm(pictureOf(drawn));
    const QByteArray other = asPpm(with({0, 0, 10, 10}, [](int, int, int) { return 0; }));
    const std::vector<PageView> all = {{3, square.crop}, {4, square.crop}, {5, square.crop}};
    const std::vector<TouchedPart> parts = {font(1, 3), font(2, 4), font(3, 5)};
    const File original(sound + other + sound);
    const auto failed = [&](const QByteArray &copy, const std::vector<PageView> &pages) {
        const File file(copy);
        return list(comparePictures({file, pages}, {original, all}, parts).failed);
    };
    QCOMPARE(failed(other + sound, {{4, square.crop}, {5, square.crop}}), QList<int>{});
    QCOMPARE(failed(sound + sound, {{3, square.crop}, {5, square.crop}}), QList<int>{});
    QCOMPARE(failed(sound, {{4, square.crop}}), QList<int>{2});
    QCOMPARE(failed(sound, {{6, square.crop}}), QList<int>{});
    const std::vector<PageView> notDrawn = {{6, square.crop}};
    QVERIFY(comparePictures({original, notDrawn}, {original, all}, {}).unexplained);
}

void TestFindings::lines()
{
    for (const Findings &findings : {Findings{}, Findings{{3, 12}, false}, Findings{{1}, true}}) {
        const auto again = findingsOf(linesOf(findings));
        QVERIFY(again.has_value());
        QCOMPARE(list(again->failed), list(findings.failed));
        QCOMPARE(again->unexplained, findings.unexplained);
    }
    for (const char *lines : {"1", "0\n", "-1\n", "x\n", "1 \n", "\n", "1\n1\n", "99999999999\n"})
        QVERIFY2(!findingsOf(lines), lines);
}

void TestFindings::viewLines()
{
    const auto views = viewsOf(linesOf({{3, {-1, 0.5, 200, 100.25}, 270}, square}));
    QVERIFY(views.has_value());
    QCOMPARE(views->size(), std::size_t(2));
    QCOMPARE(views->front().page, 3);
    QCOMPARE(views->front().crop.top, 100.25);
    QCOMPARE(views->front().rotation, 270);
    for (const char *lines : {"page 1 0 0 0 1 1", "page 1 45 0 0 1 1\n", "page -1 0 0 0 1 1\n",
                              "page 1 0 0 0 nan 1\n", "page 1 0 0 0 1\n", "x\n"})
        QVERIFY2(!viewsOf(lines), lines);
}

QTEST_GUILESS_MAIN(TestFindings)
#include "tst_findings.moc"
