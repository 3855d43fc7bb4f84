#include "engine/xmp/xmp.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestXmp : public QObject
{
    Q_OBJECT

private slots:
    void xmpDate_data();
    void xmpDate();
    void xmpPacket();
    void xml_data();
    void xml();
    void utf8_data();
    void utf8();
};

void TestXmp::xmpDate_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("expected");
    QTest::newRow("east") << u"D:20240131235958+01'30'"_s << u"2024-01-31T23:59:58+01:30"_s;
    QTest::newRow("west") << u"D:20240131235958-08'00"_s << u"2024-01-31T23:59:58-08:00"_s;
    QTest::newRow("hours only") << u"D:20240131235958-08"_s << u"2024-01-31T23:59:58-08:00"_s;
    QTest::newRow("zulu") << u"D:20240131235958Z"_s << u"2024-01-31T23:59:58Z"_s;
    QTest::newRow("no zone") << u"D:20240131235958"_s << u"2024-01-31T23:59:58Z"_s;
    QTest::newRow("a zone of nonsense") << u"D:20240131235958+x"_s << u"2024-01-31T23:59:58Z"_s;
    QTest::newRow("day only") << u"D:20240131"_s << QString();
    QTest::newRow("no date") << u"yesterday"_s << QString();
    QTest::newRow("nothing") << QString() << QString();
}

void TestXmp::xmpDate()
{
    QFETCH(QString, date);
    QTEST(QString::fromStdString(engine::xmpDate(date.toStdString())), "expected");
}

void TestXmp::xmpPacket()
{
    engine::Description description;
    description.title = "Zoë & <Co> ";
    description.author = "A";
    description.created = "D:20240131235958Z";
    const auto packet = QString::fromStdString(engine::xmpPacket(description, false));
    QVERIFY(packet.contains(u"<dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">"
                            "Zoë &amp; &lt;Co&gt; </rdf:li></rdf:Alt></dc:title>"_s));
    QVERIFY(packet.contains("<dc:creator><rdf:Seq><rdf:li>A</rdf:li></rdf:Seq></dc:creator>"_L1));
    QVERIFY(packet.contains("<xmp:CreateDate>2024-01-31T23:59:58Z</xmp:CreateDate>"_L1));
    QVERIFY(!packet.contains("ModifyDate"_L1));
    QVERIFY(!packet.contains("dc:description"_L1));
    QVERIFY(!packet.contains("pdfaid:part>"_L1));
    const auto claim = QString::fromStdString(engine::xmpPacket({}, true));
    QVERIFY(claim.contains("<pdfaid:part>1</pdfaid:part>"_L1));
    QVERIFY(claim.contains("<pdfaid:conformance>B</pdfaid:conformance>"_L1));
}

void TestXmp::xml_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("plain") << QByteArray("Zo\xc3\xab & Co") << QByteArray("Zo\xc3\xab & Co");
    QTest::newRow("controls") << QByteArray("a\n\t\x1b\x7f"
                                            "b")
                              << QByteArray("a    b");
    QTest::newRow("half a pair") << QByteArray("a\xed\xa0\x80z") << QByteArray("a z");
    QTest::newRow("before the pairs") << QByteArray("\xed\x9f\xbf") << QByteArray("\xed\x9f\xbf");
    QTest::newRow("no letters") << QByteArray("\xef\xbf\xbe\xef\xbf\xbf") << QByteArray("  ");
    QTest::newRow("one before") << QByteArray("\xef\xbf\xbd") << QByteArray("\xef\xbf\xbd");
    QTest::newRow("nothing") << QByteArray("") << QByteArray("");
}

void TestXmp::xml()
{
    QFETCH(QByteArray, text);
    QTEST(QByteArray::fromStdString(engine::writableInXml(text.toStdString())), "expected");
}

void TestXmp::utf8_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("expected");
    QTest::newRow("ASCII") << QByteArray("Zoe") << false;
    QTest::newRow("two bytes") << QByteArray("Zo\xc3\xab") << true;
    QTest::newRow("three bytes") << QByteArray("\xe5\xa0\xb1 1") << true;
    QTest::newRow("four bytes") << QByteArray("\xf0\x9f\x99\x82") << true;
    QTest::newRow("Latin-1") << QByteArray("Zo\xeb") << false;
    QTest::newRow("Latin-1 inside") << QByteArray("Zo\xeb!!") << false;
    QTest::newRow("cut off") << QByteArray("Zo\xc3") << false;
    QTest::newRow("a follower alone") << QByteArray("\xab") << false;
    QTest::newRow("too long a form") << QByteArray("\xc1\x81") << false;
    QTest::newRow("UTF-16") << QByteArray("\xfe\xff\x00Z", 4) << false;
    QTest::newRow("both kinds") << QByteArray("\xc3\xab\xeb") << false;
    QTest::newRow("nothing") << QByteArray() << false;
}

void TestXmp::utf8()
{
    QFETCH(QByteArray, text);
    QTEST(engine::isUtf8BeyondAscii(text.toStdString()), "expected");
}

QTEST_GUILESS_MAIN(TestXmp)
#include "tst_xmp.moc"
