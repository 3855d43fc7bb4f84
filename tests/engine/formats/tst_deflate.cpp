#include "engine/formats/deflate.h"

#include <QTest>

class TestDeflate : public QObject
{
    Q_OBJECT

private slots:
    void roundTrip_data();
    void roundTrip();
};

void TestDeflate::roundTrip_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a letter") << QByteArray("a");
    QTest::newRow("much of the same") << QByteArray(300'000, 'a');
    QByteArray text;
    for (int number = 0; number < 20'000; ++number)
        text += QByteArray::number(number * 7919) + ' ';
    QTest::newRow("text") << text.left(100'000);
    QTest::newRow("long text") << text.repeated(2);
}

void TestDeflate::roundTrip()
{
    QFETCH(QByteArray, bytes);
    const std::string plain = bytes.toStdString();
    const std::string thorough = engine::deflated(plain);
    const std::string quick = engine::quicklyDeflated(plain);
    QCOMPARE(engine::inflated(thorough, plain.size() + 1), std::optional(plain));
    QCOMPARE(engine::inflated(quick, plain.size() + 1), std::optional(plain));
    QVERIFY(thorough.size() <= quick.size());
}

QTEST_GUILESS_MAIN(TestDeflate)
#include "tst_deflate.moc"
