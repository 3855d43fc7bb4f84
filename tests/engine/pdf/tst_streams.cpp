#include "engine/pdf/streams.h"

#include <QTest>

class TestStreams : public QObject
{
    Q_OBJECT

private slots:
    void genericFilters_data();
    void genericFilters();
};

void TestStreams::genericFilters_data()
{
    QTest::addColumn<QByteArrayList>("filters");
    QTest::addColumn<bool>("areGeneric");
    QTest::newRow("none") << QByteArrayList() << true;
    for (const char *generic :
         {"/FlateDecode", "/LZWDecode", "/ASCII85Decode", "/ASCIIHexDecode", "/RunLengthDecode"})
        QTest::newRow(generic) << QByteArrayList{generic} << true;
    for (const char *other :
         {"/DCTDecode", "/JPXDecode", "/CCITTFaxDecode", "/JBIG2Decode", "/Crypt", "/Fl", "?"})
        QTest::newRow(other) << QByteArrayList{other} << false;
    QTest::newRow("two") << QByteArrayList{"/ASCII85Decode", "/FlateDecode"} << true;
    QTest::newRow("one of two") << QByteArrayList{"/ASCII85Decode", "/DCTDecode"} << false;
}

void TestStreams::genericFilters()
{
    QFETCH(QByteArrayList, filters);
    QFETCH(bool, areGeneric);
    std::vector<std::string> names;
    for (const QByteArray &filter : filters)
        names.push_back(filter.toStdString());
    QCOMPARE(engine::isGeneric(names), areGeneric);
}

QTEST_GUILESS_MAIN(TestStreams)
#include "tst_streams.moc"
