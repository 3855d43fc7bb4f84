// The lines that pass the views of pages on.
#include "engine/pdf/pageview.h"

#include <QTest>

class TestPageView : public QObject
{
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
};

void TestPageView::lines_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("right");
    QTest::newRow("none") << QByteArray() << true;
    QTest::newRow("two") << QByteArray("page 0 0 0 0 612 792\npage 12 270 -1.5 2 3 4000000\n")
                         << true;
    for (const char *wrong :
         {"page 0 0 0 0 612 792", "side 0 0 0 0 612 792\n", "page 0 0 0 0 612\n",
          "page 0 0 0 0 612 792 1\n", "page -1 0 0 0 612 792\n", "page 0 45 0 0 612 792\n",
          "page 0 360 0 0 612 792\n", "page 0 0 nan 0 612 792\n", "page 0 0 0 inf 612 792\n",
          "page 0 0 0 0 inf 792\n", "page 0 0 0 0 612 inf\n", "page 00 0 0 0 612 792\n",
          "page  0 0 0 0 612 792\n", "page 0 0 0 0 612.0 792\n", "page 4294967296 0 0 0 612 792\n",
          "\n"})
        QTest::newRow(wrong) << QByteArray(wrong) << false;
}

void TestPageView::lines()
{
    QFETCH(QByteArray, lines);
    QFETCH(bool, right);
    const auto views = engine::viewsOf(lines.toStdString());
    QCOMPARE(views.has_value(), right);
    if (right)
        QCOMPARE(QByteArray::fromStdString(engine::linesOf(*views)), lines);
}

QTEST_GUILESS_MAIN(TestPageView)
#include "tst_pageview.moc"
