// What is cut out of an XMP packet, byte by byte.
#include "engine/xmp/xmptrimming.h"

#include <QTest>

using engine::History;

class TestXmpTrimming : public QObject
{
    Q_OBJECT

private slots:
    void cut_data();
    void cut();
    void untouched_data();
    void untouched();
};

namespace {

constexpr auto begin = "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n";
constexpr auto end = "<?xpacket end=\"w\"?>";
const QByteArray history =
    "<m:History><r:Seq><r:li r:parseType=\"Resource\"><m:action>saved</m:action>"
    "</r:li></r:Seq></m:History>";
const QByteArray thumbnails =
    "<xmp:Thumbnails><r:Alt><r:li>/9j/4AAQ</r:li></r:Alt></xmp:Thumbnails>";
constexpr auto latin = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>";

QByteArray root(const QByteArray &properties)
{
    return "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">"
           "<r:RDF xmlns:r=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><r:Description "
           "r:about=\"\""
           " xmlns:m=\"http://ns.adobe.com/xap/1.0/mm/\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\""
           " xmlns:dc=\"http://purl.org/dc/elements/1.1/\""
           " xmlns:pdfaid=\"http://www.aiim.org/pdfa/ns/id/\">" +
           properties + "</r:Description></r:RDF></x:xmpmeta>";
}

QByteArray packet(const QByteArray &properties, const QByteArray &padding = "\n")
{
    return begin + root(properties) + padding + end;
}

QByteArray trimmed(const QByteArray &text, History kept)
{
    const auto result = engine::trimmedPacket(text.toStdString(), kept);
    return result ? QByteArray::fromStdString(*result) : "as it was";
}

} // namespace

void TestXmpTrimming::cut_data()
{
    const QByteArray title = "<dc:title><r:Alt><r:li xml:lang=\"x-default\">T &amp; \xC3\xA4"
                             "</r:li></r:Alt></dc:title>\n <pdfaid:part>1</pdfaid:part>";
    const QByteArray padding = "\n" + QByteArray(99, ' ').repeated(20);
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("kept");
    QTest::addColumn<QByteArray>("result");
    QTest::newRow("padding") << packet(title, padding) << true << packet(title);
    QTest::newRow("history") << packet(title + history) << false << packet(title);
    QTest::newRow("history first") << packet(history + title) << false << packet(title);
    QTest::newRow("thumbnails") << packet(title + thumbnails) << true << packet(title);
    QTest::newRow("palettes")
        << packet("<t:SwatchGroups xmlns:t=\"http://ns.adobe.com/xap/1.0/t/pg/\"/>" + title) << true
        << packet(title);
    QTest::newRow("all of it") << packet(thumbnails + title + history, padding) << false
                               << packet(title);
    QTest::newRow("not the history")
        << packet(thumbnails + title + history, padding) << true << packet(title + history);
    QTest::newRow("nothing else") << packet(history) << false << packet({});
    QTest::newRow("empty one") << packet("<m:History/>" + title) << false << packet(title);
    QTest::newRow("no padding left") << packet(title + history, "") << false << packet(title, "");
    QTest::newRow("of many megabytes")
        << packet(thumbnails.chopped(37) + QByteArray(11 << 20, 'A') + thumbnails.last(37) + title)
        << true << packet(title);
    QTest::newRow("behind a byte order mark")
        << "\xEF\xBB\xBF" + packet(title + history) << false << "\xEF\xBB\xBF" + packet(title);
    // What readers of packets do, too.
    QTest::newRow("whatever encoding is declared")
        << latin + packet(title + history) << false << latin + packet(title);
}

void TestXmpTrimming::cut()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, kept);
    QFETCH(QByteArray, result);
    QCOMPARE(trimmed(text, kept ? History::Kept : History::Dropped), result);
}

void TestXmpTrimming::untouched_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no XML") << QByteArray("no XML <m:History/>");
    QTest::newRow("nothing to cut") << packet("<m:DocumentID>uuid:1</m:DocumentID>");
    QTest::newRow("broken off") << packet(history).chopped(37);
    QTest::newRow("another's history") << packet("<dc:History>1890</dc:History>");
    QTest::newRow("in a value") << packet("<dc:source><r:Description>" + history +
                                          "</r:Description></dc:source>");
    QTest::newRow("in a text") << packet("<dc:title><![CDATA[" + history + "]]></dc:title>");
    QTest::newRow("in a comment") << packet("<!--" + history + "-->");
    QTest::newRow("text behind it") << begin + root({}) + "<!-- by hand -->   " + end;
    QTest::newRow("other letters than UTF-8") << packet("<dc:title>\xE4</dc:title>" + history);
    QTest::newRow("no such prefix") << packet("<nobodys:title/>" + history);
    QTest::newRow("document type") << "<!DOCTYPE x:xmpmeta>" + packet(history);
    // In UTF-16
    QByteArray wide;
    const QByteArray narrow = "<a xmlns='b'/>   ";
    for (const char letter : narrow)
        wide += QByteArray(1, letter) + '\0';
    QTest::newRow("wide letters") << QByteArray("\xff\xfe") + wide;
}

void TestXmpTrimming::untouched()
{
    QFETCH(QByteArray, text);
    QCOMPARE(trimmed(text, History::Dropped), QByteArray("as it was"));
}

QTEST_GUILESS_MAIN(TestXmpTrimming)
#include "tst_xmptrimming.moc"
