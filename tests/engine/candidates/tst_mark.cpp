// What a document information mark makes of a document's description.
#include "parsed.h"

#include "engine/candidates/mark.h"
#include "engine/xmp/xmpedit.h"

#include <QTest>

using engine::DescriptionChanges;

namespace {

const char *const offMark = " [ /Creator ( ) \n /Producer ( ) \n /DOCINFO pdfmark";

const char *const packet =
    "<?xpacket begin=\"\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
    "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
    "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
    "<rdf:Description rdf:about=\"\" xmlns:pdf=\"http://ns.adobe.com/pdf/1.3/\" "
    "pdf:Producer=\"Press\" xmlns:own=\"urn:own\"><own:shelf>7</own:shelf>"
    "</rdf:Description>"
    "<rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\">"
    "<dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">Old</rdf:li>"
    "<rdf:li xml:lang=\"de\">Alt</rdf:li></rdf:Alt></dc:title></rdf:Description>"
    "</rdf:RDF></x:xmpmeta>\n<?xpacket end=\"w\"?>";

QByteArray described(const QByteArray &information)
{
    return parsed::with({information, "<< /Type /Metadata /Subtype /XML >>\nstream\n" +
                                          QByteArray(packet) + "\nendstream"},
                        "/Metadata 7 0 R");
}

} // namespace

class TestMark : public QObject
{
    Q_OBJECT

private slots:
    void changes_data();
    void changes();
    void information();
    void blanks();
    void nothingToChange();
    void packetKeepsTheRest();
    void packetLosesWhatIsBlanked();
    void noPacket_data();
    void noPacket();
};

void TestMark::changes_data()
{
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<DescriptionChanges>("wanted");
    const auto row = [](const char *name, const char *mark, const DescriptionChanges &wanted) {
        QTest::newRow(name) << QByteArray(mark) << wanted;
    };
    row("none", "", {});
    row("page off", offMark, {{"/Creator", ""}, {"/Producer", ""}});
    row("all empty", "[ /Title ()\n /Author () \n /Subject () \n /DOCINFO pdfmark", {});
    row("texts", "[ /Title (A \\(b\\)) /Keywords (k, l) /DOCINFO pdfmark",
        {{"/Title", "A (b)"}, {"/Keywords", "k, l"}});
    row("UTF-8", "[ /Author (Zo\xc3\xab) /DOCINFO pdfmark", {{"/Author", "Zo\xc3\xab"}});
    row("octal, UTF-16", "[ /Author (\\376\\377\\000\\344) /DOCINFO pdfmark",
        {{"/Author", "\xc3\xa4"}});
    row("what is no description", "[ /View (x) /Trapped (y) /DOCINFO pdfmark", {});
}

void TestMark::changes()
{
    QFETCH(QByteArray, mark);
    QTEST(engine::changesOfMark(mark.toStdString()), "wanted");
}

void TestMark::information()
{
    parsed::Document document(parsed::with({}));
    QVERIFY(engine::applyChanges(document, {{"/Title", "Zo\xc3\xab"}}));
    QPDFObjectHandle information = document->getTrailer().getKey("/Info");
    QCOMPARE(information.getKey("/Title").getUTF8Value(), std::string("Zo\xc3\xab"));
    QVERIFY(!engine::applyChanges(document, {{"/Title", "Zo\xc3\xab"}}));
}

void TestMark::blanks()
{
    parsed::Document document(described("<< /Creator (Mill) /Producer (Press) /Own (kept) >>"));
    document->getTrailer().replaceKey("/Info", document->getObject(6, 0));
    QVERIFY(engine::applyChanges(document, engine::changesOfMark(offMark)));
    QPDFObjectHandle information = document->getTrailer().getKey("/Info");
    QVERIFY(!information.hasKey("/Creator"));
    QVERIFY(!information.hasKey("/Producer"));
    QCOMPARE(information.getKey("/Own").getUTF8Value(), std::string("kept"));
}

void TestMark::nothingToChange()
{
    parsed::Document document(parsed::with({}));
    QVERIFY(!engine::applyChanges(document, engine::changesOfMark(offMark)));
    QVERIFY(!document->getTrailer().hasKey("/Info"));
    QVERIFY(!engine::applyChanges(document, {}));
}

void TestMark::packetKeepsTheRest()
{
    const auto changed =
        engine::changedXmp(packet, {{"/Title", "a < b"}, {"/Author", "Zo\xc3\xab"}});
    QVERIFY(changed);
    const QByteArray text = QByteArray::fromStdString(*changed);
    QVERIFY2(text.contains("<own:shelf>7</own:shelf>"), text);
    QVERIFY2(text.contains("pdf:Producer=\"Press\""), text);
    QVERIFY2(text.contains("<rdf:li xml:lang=\"x-default\">a &lt; b</rdf:li>"), text);
    QVERIFY2(text.contains("<rdf:Seq><rdf:li>Zo\xc3\xab</rdf:li></rdf:Seq>"), text);
    QVERIFY2(!text.contains("Old") && !text.contains(">Alt<"), text);
    QVERIFY2(text.startsWith("<?xpacket begin="), text);
    QVERIFY2(text.trimmed().endsWith("<?xpacket end=\"w\"?>"), text);
}

void TestMark::packetLosesWhatIsBlanked()
{
    parsed::Document document(described("<< >>"));
    QVERIFY(engine::applyChanges(document, engine::changesOfMark(offMark)));
    QPDFObjectHandle metadata = document->getRoot().getKey("/Metadata");
    const auto data = metadata.getRawStreamData();
    const QByteArray text(reinterpret_cast<const char *>(data->getBuffer()),
                          qsizetype(data->getSize()));
    QVERIFY2(!text.contains("Press"), text);
    QVERIFY2(text.contains("Old"), text);
    QVERIFY(!engine::applyChanges(document, engine::changesOfMark(offMark)));
}

void TestMark::noPacket_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no XML") << QByteArray("%PDF");
    QTest::newRow("cut") << QByteArray(packet).left(300);
    QTest::newRow("another kind") << QByteArray("<a><b/></a>");
    QTest::newRow("no description")
        << QByteArray("<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"/>");
}

void TestMark::noPacket()
{
    QFETCH(QByteArray, text);
    QVERIFY(!engine::changedXmp(text.toStdString(), {{"/Title", "x"}}));
}

QTEST_GUILESS_MAIN(TestMark)
#include "tst_mark.moc"
