// What PDF/A forbids, rule by rule, on made-up documents.
#include "documents.h"
#include "parsed.h"
#include "samples.h"

#include "engine/pdfa/rules.h"

#include <QTest>

using namespace parsed;

class TestPdfaRules : public QObject
{
    Q_OBJECT

private slots:
    void claimOfPdfa_data();
    void claimOfPdfa();
    void forbidden_data();
    void forbidden();
    void allowed_data();
    void allowed();
    void largeNumbers();
    void notesKeepTheirSize();
    void whatIsTakenOut();
    void fontsOfReaders_data();
    void fontsOfReaders();
};

void TestPdfaRules::claimOfPdfa_data()
{
    QTest::addColumn<QByteArray>("packet");
    QTest::addColumn<QByteArray>("intents");
    QTest::addColumn<bool>("claims");
    const QByteArray claim = "<pdfaid:part>1</pdfaid:part>";
    QTest::newRow("both") << claim << QByteArray("[<< >>]") << true;
    QTest::newRow("no claim") << QByteArray("<pdfaid:>") << QByteArray("[<< >>]") << false;
    QTest::newRow("empty intents") << claim << QByteArray("[]") << false;
    QTest::newRow("no intents") << claim << QByteArray("null") << false;
}

void TestPdfaRules::claimOfPdfa()
{
    QFETCH(QByteArray, packet);
    QFETCH(QByteArray, intents);
    QFETCH(bool, claims);
    Document document(with({pdfStream("/Type /Metadata /Subtype /XML", packet)},
                           "/Metadata 6 0 R /OutputIntents " + intents));
    QCOMPARE(engine::claimObjection(document).empty(), claims);
    Document without(with({}, "/OutputIntents " + intents));
    QVERIFY(!engine::claimObjection(without).empty());
}

void TestPdfaRules::forbidden_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QByteArray>("objection");
    const QByteArray transparency = "transparency";
    for (const char *state : {"/SMask << /S /Luminosity >>", "/BM /Multiply", "/ca 0.99", "/CA 0",
                              "/Group << /S /Transparency >>"})
        QTest::newRow(state) << "<< " + QByteArray(state) + " >>" << transparency;
    QTest::newRow("soft mask of an image") << pdfStream("/SMask 4 0 R", "x") << transparency;
    const QByteArray font = "a font that is not embedded";
    QTest::newRow("font without descriptor")
        << QByteArray("<< /Type /Font /Subtype /TrueType >>") << font;
    QTest::newRow("descriptor without program")
        << QByteArray("<< /Type /Font /Subtype /Type1 /FontDescriptor << >> >>") << font;
    QTest::newRow("program that is none")
        << QByteArray("<< /Type /Font /Subtype /Type1 /FontDescriptor << /FontFile 5 >> >>")
        << font;
    const QByteArray action = "a forbidden action";
    for (const char *name : {"JavaScript", "Launch", "Sound", "Movie", "ResetForm", "ImportData",
                             "Rendition", "SetOCGState", "GoToE", "Hide", "Trans", "GoTo3DView",
                             "set-state", "no-op", "Named /N /Print"})
        QTest::newRow(name) << "<< /S /" + QByteArray(name) + " >>" << action;
    QTest::newRow("within an array") << QByteArray("[1 [<< /A << /S /Launch >> >>]]") << action;
    QTest::newRow("interpolated") << QByteArray("<< /Interpolate true >>")
                                  << QByteArray("an interpolated image");
    QTest::newRow("attached") << QByteArray("<< /EF << >> >>") << QByteArray("an attachment");
    QTest::newRow("attachments") << QByteArray("<< /EmbeddedFiles << >> >>")
                                 << QByteArray("an attachment");
    const QByteArray annotation = "a forbidden annotation";
    for (const char *entries :
         {"/Subtype /Movie", "/Subtype /Sound", "/Subtype /PolyLine", "/Subtype /FileAttachment",
          "/Subtype /Text /F 1", "/Subtype /Square /F 6", "/Subtype /Square /F 36"})
        QTest::newRow(entries) << "<< /Rect [0 0 9 9] " + QByteArray(entries) + " >>" << annotation;
    const QByteArray limits = "more than PDF 1.4 allows of something";
    QTest::newRow("real") << QByteArray("32767.5") << limits;
    QTest::newRow("negative real") << QByteArray("[-32767.5]") << limits;
    QTest::newRow("string") << '(' + QByteArray(65536, 'x') + ')' << limits;
    QTest::newRow("array") << '[' + QByteArray("0 ").repeated(8192) + ']' << limits;
    QTest::newRow("colorants") << "[/DeviceN [" + QByteArray("/C ").repeated(9) + "] /DeviceCMYK]"
                               << limits;
    const QByteArray numbers = "numbers that are too large";
    QTest::newRow("form") << formOf("32768.5 0 m") << numbers;
    QTest::newRow("negative, in a form") << formOf("-32768.5 0 m") << numbers;
}

void TestPdfaRules::forbidden()
{
    QFETCH(QByteArray, object);
    QFETCH(QByteArray, objection);
    Document document(showing("0 0 m", {formOf({}), object}));
    QCOMPARE(QByteArray::fromStdString(engine::brokenPdfaRule(document)), objection);
}

void TestPdfaRules::allowed_data()
{
    QTest::addColumn<QByteArray>("object");
    for (const char *object :
         {"<< /SMask /None >>", "<< /BM /Normal >>", "<< /BM /Compatible >>", "<< /ca 1 /CA 1.0 >>",
          "<< /Group << /S /Other >> >>", "<< /Type /Font /Subtype /Type3 >>",
          "<< /Type /Font /Subtype /Type0 >>", "<< /S /Named /N /NextPage >>",
          "<< /S /Named /N /PrevPage >>", "<< /S /Named /N /FirstPage >>",
          "<< /S /Named /N /LastPage >>", "<< /Rect [0 0 9 9] /Subtype /Text /F 28 >>",
          "<< /Rect [0 0 9 9] /Subtype /Ink >>", "<< /Rect 0 /Subtype /Movie >>", "<< /S /URI >>",
          "<< /Interpolate false >>", "32767.0", "-32767.0"})
        QTest::newRow(object) << QByteArray(object);
    for (const char *key : {"FontFile", "FontFile2", "FontFile3"})
        QTest::newRow(key) << "<< /Type /Font /Subtype /Type1 /FontDescriptor << /" +
                                  QByteArray(key) + " 4 0 R >> >>";
    QTest::newRow("string") << '(' + QByteArray(65535, 'x') + ')';
    QTest::newRow("array") << '[' + QByteArray("0 ").repeated(8191) + ']';
    QTest::newRow("colorants") << "[/DeviceN [" + QByteArray("/C ").repeated(8) + "] /DeviceCMYK]";
    QTest::newRow("numbers in a form") << formOf("32767.0 -32767.0 m");
    QTest::newRow("numbers that draw nothing") << pdfStream({}, "32768.5 0 m");
}

void TestPdfaRules::allowed()
{
    QFETCH(QByteArray, object);
    Document document(showing("0 0 m", {formOf({}), object}));
    QCOMPARE(QByteArray::fromStdString(engine::brokenPdfaRule(document)), QByteArray());
}

void TestPdfaRules::largeNumbers()
{
    const std::string objection = "numbers that are too large";
    Document page(showing("0 32768.5 m"));
    QCOMPARE(engine::brokenPdfaRule(page), objection);
    const QByteArray font = "<< /Type /Font /Subtype /Type3 /CharProcs << /a 7 0 R >> >>";
    Document glyph(showing({}, {formOf({}), font, pdfStream({}, "0 32768.5 m")}));
    QCOMPARE(engine::brokenPdfaRule(glyph), objection);
}

// Preflight wants both flags of a note, and none of the others is touched.
void TestPdfaRules::notesKeepTheirSize()
{
    Document document(showing({}, {formOf({}), "<< /Rect [0 0 9 9] /Subtype /Text /F 4 >>"}));
    engine::settlePdfa(document);
    QCOMPARE(document->getObject(6, 0).getKey("/F").getIntValue(), 28);
    Document other(showing({}, {formOf({}), "<< /Rect [0 0 9 9] /Subtype /Ink /F 4 >>"}));
    engine::settlePdfa(other);
    QCOMPARE(other->getObject(6, 0).getKey("/F").getIntValue(), 4);
}

void TestPdfaRules::whatIsTakenOut()
{
    const QByteArray looks = "<< /N 5 0 R /D 5 0 R /R 5 0 R >>";
    const QByteArray font =
        "<< /Subtype /Type3 /Encoding << /BaseEncoding /WinAnsiEncoding /Differences [] >> >>";
    Document document(showing({}, {formOf({}), "[<< /Rect [0 0 9 9] /Subtype /Ink /AP " + looks +
                                                   " >> " + font + " << /AP " + looks + " >>]"}));
    engine::settlePdfa(document);
    auto list = document->getObject(6, 0);
    QCOMPARE(list.getArrayItem(0).getKey("/AP").unparse(), std::string("<< /N 5 0 R >>"));
    QCOMPARE(list.getArrayItem(1).getKey("/Encoding").unparse(),
             std::string("<< /Differences [ ] >>"));
    QCOMPARE(list.getArrayItem(2).getKey("/AP").getKeys().size(), 3U);
}

void TestPdfaRules::fontsOfReaders_data()
{
    QTest::addColumn<QByteArray>("font");
    QTest::addColumn<bool>("leaves");
    const QByteArray descriptor = " /FontDescriptor << /Type /FontDescriptor /Flags 32 >> >>";
    const QByteArray embedded = " /FontDescriptor << /Flags 32 /FontFile2 5 0 R >> >>";
    QTest::newRow("a standard font") << QByteArray("<< /Type /Font /Subtype /Type1 >>") << false;
    QTest::newRow("Type 1") << "<< /Type /Font /Subtype /Type1" + descriptor << true;
    QTest::newRow("TrueType") << "<< /Type /Font /Subtype /TrueType" + descriptor << true;
    QTest::newRow("embedded") << "<< /Type /Font /Subtype /TrueType" + embedded << false;
    QTest::newRow("within another")
        << "<< /Type /Font /Subtype /Type0 /DescendantFonts [<< /Type /Font /Subtype"
           " /CIDFontType2" +
               descriptor + "] >>"
        << true;
    QTest::newRow("Type 3") << "<< /Type /Font /Subtype /Type3" + descriptor << false;
}

void TestPdfaRules::fontsOfReaders()
{
    QFETCH(QByteArray, font);
    Document document(showing({}, {formOf({}), font}));
    QTEST(engine::leavesFontsToReaders(document), "leaves");
}

QTEST_GUILESS_MAIN(TestPdfaRules)
#include "tst_rules.moc"
