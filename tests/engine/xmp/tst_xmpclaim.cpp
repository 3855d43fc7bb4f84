// Which standard a packet claims.
#include "engine/xmp/xmpclaim.h"

#include <QTest>

class TestXmpClaim : public QObject
{
    Q_OBJECT

private slots:
    void claim_data();
    void claim();
};

void TestXmpClaim::claim_data()
{
    QTest::addColumn<QByteArray>("packet");
    QTest::addColumn<QByteArray>("standard");
    const auto row = [](const char *packet, const char *standard) {
        QTest::newRow(packet) << QByteArray(packet) << QByteArray(standard);
    };
    row("", "");
    row("<dc:title>pdfaid:part</dc:title>", "");
    row("<pdfaid:part", "");
    row("<pdfaid:part>1</pdfaid:part>", "PDF/A-1");
    row("<pdfaid:part> 3 </pdfaid:part>", "PDF/A-3");
    row("<rdf:Description pdfaid:part=\"2\" pdfaid:conformance=\"B\"/>", "PDF/A-2");
    row("<rdf:Description pdfaid:part = '2'/>", "PDF/A-2");
    row("<pdfuaid:part>1</pdfuaid:part><pdfaid:part>1</pdfaid:part>", "PDF/A-1");
    row("<pdfuaid:part>1</pdfuaid:part>", "PDF/UA-1");
    row("<pdfxid:GTS_PDFXVersion>PDF/X-4</pdfxid:GTS_PDFXVersion>", "PDF/X-4");
    row("<pdfx:GTS_PDFXVersion>PDF/X-1a:2001</pdfx:GTS_PDFXVersion>", "PDF/X-1a:2001");
}

void TestXmpClaim::claim()
{
    QFETCH(QByteArray, packet);
    QFETCH(QByteArray, standard);
    const auto found = engine::claimInPacket(packet.toStdString());
    QCOMPARE(QByteArray::fromStdString(found.value_or("")), standard);
    QCOMPARE(found.has_value(), !standard.isEmpty());
}

QTEST_GUILESS_MAIN(TestXmpClaim)
#include "tst_xmpclaim.moc"
