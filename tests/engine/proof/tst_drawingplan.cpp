// Which pages are drawn by one run of the reader, and how large.
#include "engine/proof/drawingplan.h"

#include <QTest>

using namespace engine;

class TestDrawingPlan : public QObject
{
    Q_OBJECT

private slots:
    void ranges_data();
    void ranges();
    void largePages();
    void manyPages();
    void resolution();
};

void TestDrawingPlan::ranges_data()
{
    QTest::addColumn<QList<int>>("pages");
    QTest::addColumn<int>("processes");
    QTest::addColumn<QString>("drawings");
    QTest::newRow("none") << QList<int>{} << 2 << QString();
    QTest::newRow("one") << QList<int>{3} << 2 << "3";
    QTest::newRow("two") << QList<int>{3, 4} << 2 << "3 4";
    QTest::newRow("three") << QList<int>{3, 4, 5} << 2 << "3 4|5";
    QTest::newRow("four") << QList<int>{3, 4, 5, 6} << 2 << "3 4|5 6";
    QTest::newRow("four in one") << QList<int>{3, 4, 5, 6} << 1 << "3 4 5 6";
    QTest::newRow("five") << QList<int>{0, 1, 2, 3, 4} << 2 << "0 1 2|3 4";
    QTest::newRow("a gap of one") << QList<int>{0, 2, 3, 5, 8, 9} << 1 << "0 1 2 3 4 5|8 9";
    QTest::newRow("a gap of two") << QList<int>{0, 3} << 1 << "0|3";
    QTest::newRow("the last") << QList<int>{9} << 1 << "9";
}

void TestDrawingPlan::ranges()
{
    QFETCH(QList<int>, pages);
    QFETCH(int, processes);
    std::vector<PageView> views;
    for (int page = 0; page < 10; ++page)
        views.push_back({page, {0, 0, 595, 842}, 0});
    QStringList drawings;
    for (const Drawing &drawing : drawingPlan({pages.begin(), pages.end()}, views, 50, processes)) {
        QCOMPARE(drawing.resolution, 50.0);
        QStringList numbers;
        for (const PageView &view : drawing.pages)
            numbers << QString::number(view.page);
        drawings << numbers.join(' ');
    }
    QTEST(drawings.join('|'), "drawings");
}

// One is drawn on its own, and never as what lies between two others.
void TestDrawingPlan::largePages()
{
    const std::vector<PageView> views = {
        {0, {0, 0, 595, 842}, 0}, {1, {0, 0, 14400, 14400}, 0}, {2, {0, 0, 595, 842}, 0}};
    const auto plan = drawingPlan({0, 1, 2}, views, 50, 1);
    QCOMPARE(plan.size(), std::size_t(3));
    QVERIFY(plan[1].resolution > 9 && plan[1].resolution < 10.1);
    QVERIFY(plan[1].mostBytes() < 16'000'000);
    QCOMPARE(drawingPlan({0, 2}, views, 50, 1).size(), std::size_t(2));
    const auto elsewhere = drawingPlan({0}, {{0, {14000, 14000, 14595, 14842}, 0}}, 50, 1);
    QCOMPARE(elsewhere[0].resolution, 50.0);
}

void TestDrawingPlan::manyPages()
{
    std::vector<PageView> views;
    std::set<int> pages;
    for (int page = 0; page < 1000; ++page) {
        views.push_back({page, {0, 0, 595, 842}, 0});
        pages.insert(page);
    }
    std::size_t count = 0;
    for (const Drawing &drawing : drawingPlan(pages, views, 50, 2)) {
        count += drawing.pages.size();
        QVERIFY(drawing.pages.size() < 160);
    }
    QCOMPARE(count, std::size_t(1000));
}

void TestDrawingPlan::resolution()
{
    QCOMPARE(comparisonResolution(150), 50.0);
    QCOMPARE(comparisonResolution(1200), 50.0);
    QCOMPARE(comparisonResolution(72), 24.0);
    QCOMPARE(comparisonResolution(9), 18.0);
    QCOMPARE(comparisonResolution(0), 50.0);
}

QTEST_GUILESS_MAIN(TestDrawingPlan)
#include "tst_drawingplan.moc"
