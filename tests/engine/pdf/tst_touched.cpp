// The lines that pass touched parts on.
#include "engine/pdf/touched.h"

#include <QTest>

class TestTouched : public QObject
{
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
};

void TestTouched::lines_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("right");
    QTest::newRow("none") << QByteArray() << true;
    QTest::newRow("two") << QByteArray("image 12 0 1.5 -2 3 4000000\nfont 3 17 0 0 612 792\n")
                         << true;
    for (const char *wrong :
         {"image 12 0 1 2 3 4", "picture 12 0 1 2 3 4\n", "image 12 0 1 2 3\n",
          "image 12 0 1 2 3 4 5\n", "image 0 0 1 2 3 4\n", "image 1 -1 1 2 3 4\n",
          "image 1 0 nan 2 3 4\n", "image 1 0 1 2 3 inf\n", "\n", "image 1 0 1 2 3 4\n\n",
          "image 4 000.25 0 595 842\n", "image  1 0 1 2 3 4\n", "image 4294967297 0 1 2 3 4\n"})
        QTest::newRow(wrong) << QByteArray(wrong) << false;
}

void TestTouched::lines()
{
    QFETCH(QByteArray, lines);
    QFETCH(bool, right);
    const auto parts = engine::partsOf(lines.toStdString());
    QCOMPARE(parts.has_value(), right);
    if (right)
        QCOMPARE(QByteArray::fromStdString(engine::linesOf(*parts)), lines);
}

QTEST_GUILESS_MAIN(TestTouched)
#include "tst_touched.moc"
