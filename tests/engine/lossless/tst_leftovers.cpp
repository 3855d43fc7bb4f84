// What editors leave goes; what a reader shows, and what a standard asks for, stays.
#include "documents.h"
#include "parsed.h"
#include "samples.h"

#include "engine/lossless/claim.h"
#include "engine/lossless/leftovers.h"
#include "engine/lossless/packet.h"
#include "engine/pdf/streams.h"

#include <QTest>

using Object = QPDFObjectHandle;

class TestLeftovers : public QObject
{
    Q_OBJECT

private slots:
    void dropped();
    void kept_data();
    void kept();
    void packet_data();
    void packet();
    void storedPacket();
    void claim();
};

namespace {

constexpr auto privateData = "/PieceInfo << /Editor << /LastModified (D:2020) /Private (x) >> >>";

QByteArray metadata(const QByteArray &properties = "<dc:title>T</dc:title>",
                    const QByteArray &entries = {})
{
    return pdfStream(
        "/Type /Metadata /Subtype /XML " + entries,
        "<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'>"
        "<r:RDF xmlns:r='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><r:Description"
        " xmlns:m='http://ns.adobe.com/xap/1.0/mm/' xmlns:dc='http://purl.org/dc/elements/1.1/'"
        " xmlns:pdfaid='http://www.aiim.org/pdfa/ns/id/'>" +
            properties + "</r:Description></r:RDF></x:xmpmeta>" + QByteArray(2000, ' ') +
            "<?xpacket end='w'?>");
}

constexpr auto history = "<m:History>saved, and saved again</m:History>";

QByteArray withMetadata(const QByteArray &stream)
{
    return parsed::with({stream}, "/Metadata 6 0 R");
}

QByteArray packetOf(QPDF &document)
{
    const auto bytes = engine::decodedBytesOf(document.getRoot().getKey("/Metadata"));
    return bytes ? QByteArray::fromStdString(*bytes) : QByteArray();
}

engine::LosslessOptions optionsFor(QPDF &document)
{
    return {engine::claimedStandard(document), true};
}

} // namespace

void TestLeftovers::dropped()
{
    documents::Parts parts;
    parts.catalogue = privateData;
    parts.page = QByteArray(privateData) + " /Thumb 7 0 R /Metadata 6 0 R";
    parts.resources = "/XObject << /I 8 0 R >>";
    parts.objects = {
        metadata(), pdfStream("/Width 1 /Height 1", "x"),
        pdfStream("/Subtype /Form /BBox [0 0 9 9] /Metadata 6 0 R " + QByteArray(privateData),
                  "f")};
    parsed::Document document(documents::withParts(parts));
    engine::dropLeftovers(document, {});
    QVERIFY(!document->getRoot().hasKey("/PieceInfo"));
    Object page = document->getAllPages().at(0);
    for (const char *key : {"/PieceInfo", "/Thumb", "/Metadata"})
        QVERIFY2(!page.hasKey(key), key);
    Object form = page.getKey("/Resources").getKey("/XObject").getKey("/I").getDict();
    QVERIFY(!form.hasKey("/PieceInfo"));
    QVERIFY(!form.hasKey("/Metadata"));
    QVERIFY(form.hasKey("/BBox"));
}

void TestLeftovers::kept_data()
{
    QTest::addColumn<QByteArray>("catalogue");
    QTest::addColumn<QByteArray>("key"); // of the catalogue's /Own, or of the catalogue
    QTest::newRow("the document's metadata") << QByteArray("/Metadata 6 0 R") << QByteArray();
    QTest::newRow("an attached file's")
        << QByteArray("/Own << /Type /EmbeddedFile /Metadata 6 0 R >>") << QByteArray("/Metadata");
    QTest::newRow("a file specification's")
        << QByteArray("/Own << /Type /Filespec /Metadata 6 0 R >>") << QByteArray("/Metadata");
    QTest::newRow("a destination of that name")
        << QByteArray("/Own << /PieceInfo << /D [3 0 R /Fit] >> >>") << QByteArray("/PieceInfo");
    QTest::newRow("a page of that name")
        << QByteArray("/Own << /PieceInfo 3 0 R >>") << QByteArray("/PieceInfo");
    QTest::newRow("a glyph of that name")
        << QByteArray("/Own << /Thumb 7 0 R >>") << QByteArray("/Thumb");
    QTest::newRow("another one") << QByteArray("/Own << /Metadata 7 0 R >>")
                                 << QByteArray("/Metadata");
}

void TestLeftovers::kept()
{
    QFETCH(QByteArray, catalogue);
    QFETCH(QByteArray, key);
    parsed::Document document(parsed::with({metadata(), pdfStream({}, "0 0 d0")}, catalogue));
    engine::dropLeftovers(document, {});
    Object root = document->getRoot();
    QVERIFY(key.isEmpty() ? root.getKey("/Metadata").isStream()
                          : !root.getKey("/Own").getKey(key.toStdString()).isNull());
}

void TestLeftovers::packet_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<bool>("history");
    const QByteArray title = "<dc:title>T</dc:title>";
    QTest::newRow("no standard") << title << false;
    QTest::newRow("PDF/A") << title + "<pdfaid:part>1</pdfaid:part>" << true;
    QTest::newRow("an accessible one") << title + "<!-- pdfuaid:part='1' -->" << false;
}

void TestLeftovers::packet()
{
    QFETCH(QByteArray, properties);
    parsed::Document document(withMetadata(metadata(properties + history)));
    const auto before = packetOf(document).size();
    engine::trimPacket(document, optionsFor(document));
    const QByteArray packet = packetOf(document);
    QVERIFY(packet.size() < before - 1900);
    QVERIFY(packet.contains(properties));
    QTEST(packet.contains(history), "history");
    QVERIFY(document->getRoot().getKey("/Metadata").getDict().getKey("/Filter").isNull());
    QVERIFY(document->getRoot().getKey("/Metadata").getDict().getKey("/Subtype").isName());
}

// As it was stored: in clear text, or not.
void TestLeftovers::storedPacket()
{
    parsed::Document plain(withMetadata(metadata()));
    const QByteArray bytes = packetOf(plain);
    const QByteArray packed = qCompress(bytes, 1).mid(4);
    parsed::Document document(
        withMetadata(pdfStream("/Type /Metadata /Subtype /XML /Filter /FlateDecode", packed)));
    QCOMPARE(packetOf(document), bytes);
    engine::trimPacket(document, {});
    engine::trimPacket(plain, {});
    QCOMPARE(packetOf(document), packetOf(plain));
    Object dictionary = document->getRoot().getKey("/Metadata").getDict();
    QVERIFY(dictionary.getKey("/Filter").isNameAndEquals("/FlateDecode"));
}

void TestLeftovers::claim()
{
    parsed::Document archive(withMetadata(metadata("<pdfaid:part>2</pdfaid:part>")));
    QVERIFY(engine::claimedStandard(archive) == "PDF/A-2");
    parsed::Document plain(withMetadata(metadata()));
    QVERIFY(!engine::claimedStandard(plain));
    documents::Parts parts;
    parts.trailer = "/Info << /GTS_PDFXVersion (PDF/X-3:2002) >>";
    parsed::Document print(documents::withParts(parts));
    QVERIFY(engine::claimedStandard(print) == "PDF/X-3:2002");
}

QTEST_GUILESS_MAIN(TestLeftovers)
#include "tst_leftovers.moc"
