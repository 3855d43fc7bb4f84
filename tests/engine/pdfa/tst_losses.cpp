#include "documents.h"
#include "parsed.h"
#include "samples.h"

#include "engine/pdfa/losses.h"

#include <QTest>

using namespace parsed;

namespace {

QByteArray commented(const QByteArray &subtype)
{
    return documents::links({}, {}, "<< /Type /Annot /Rect [0 0 9 9] /Subtype " + subtype + " >>");
}

} // namespace

class TestLosses : public QObject
{
    Q_OBJECT

private slots:
    void losses_data();
    void losses();
    void strange_data();
    void strange();
};

void TestLosses::losses_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<QByteArray>("loss");
    QTest::newRow("nothing") << with({}) << QByteArray();
    QTest::newRow("form") << documents::form() << QByteArray("form fields");
    QTest::newRow("fields that lie nowhere")
        << with({"<< /FT /Tx /T (name) >>"}, "/AcroForm << /Fields [6 0 R] >>")
        << QByteArray("form");
    QTest::newRow("form without fields")
        << with({pdfStream({}, "<xdp/>")}, "/AcroForm << /XFA 6 0 R /Fields [] >>")
        << QByteArray("form");
    QTest::newRow("links") << documents::links() << QByteArray("links");
    for (const char *subtype : {"/Caret", "/Redact", "/Polygon", "/Unheard"})
        QTest::newRow(subtype) << commented(subtype) << QByteArray("comments");
    QTest::newRow("a comment's window") << commented("/Popup") << QByteArray();
    QTest::newRow("reply") << with({"<< /IRT 4 0 R >>"}, "/Six 6 0 R") << QByteArray("replies");
    const QList<QByteArray> outline = {
        "<< /Type /Outlines /First 7 0 R /Last 7 0 R /Count 1 >>",
        "<< /Title (One) /Parent 6 0 R /First 8 0 R /Last 8 0 R /Count 1 >>",
        "<< /Title (Below) /Parent 7 0 R >>"};
    QTest::newRow("outline") << with(outline, "/Outlines 6 0 R") << QByteArray("outline entries");
    QTest::newRow("hidden layer") << with({"<< /Type /OCG /Name (Plan) >>"},
                                          "/OCProperties << /OCGs [6 0 R] /D << /OFF [6 0 R] >> >>")
                                  << QByteArray("hidden layers");
    QTest::newRow("layers off unless on")
        << with({"<< /Type /OCG >>", "<< /Type /OCG >>"},
                "/OCProperties << /OCGs [6 0 R 7 0 R] /D << /BaseState /OFF /ON [6 0 R] >> >>")
        << QByteArray("hidden layers");
    QTest::newRow("layers that are on")
        << with({"<< /Type /OCG >>"},
                "/OCProperties << /OCGs [6 0 R] /D << /BaseState /OFF /ON [6 0 R 6 0 R] >> >>")
        << QByteArray();
    const QList<QByteArray> file = {"<< /Type /Filespec /F (a.csv) /EF << /F 7 0 R >> >>",
                                    pdfStream({}, "a;b")};
    QTest::newRow("attachment") << with(file,
                                        "/Names << /EmbeddedFiles << /Names [(a.csv) 6 0 R] >> >>")
                                << QByteArray("attachments");
    QTest::newRow("file of the document") << with(file, "/AF [6 0 R]") << QByteArray("attachments");
}

// An outline keeps its first entry in the copy; of the others nothing is left.
void TestLosses::losses()
{
    QFETCH(QByteArray, original);
    QFETCH(QByteArray, loss);
    Document before(original);
    Document after(
        with({"<< /First 7 0 R /Last 7 0 R >>", "<< /Title (One) >>"}, "/Outlines 6 0 R"));
    QCOMPARE(QByteArray::fromStdString(engine::lossOf(before, after)), loss);
    Document again(original);
    QCOMPARE(QByteArray::fromStdString(engine::lossOf(before, again)), QByteArray());
}

void TestLosses::strange_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("nothing") << QByteArray("<< /SMask 7 0 R >>") << QByteArray();
    QTest::newRow("ordinary form") << QByteArray("<< /NeedsRendering false >>") << QByteArray();
    QTest::newRow("matte") << pdfStream("/Matte [0 0 0]", "x")
                           << QByteArray("colours mixed with a mask");
    QTest::newRow("layers") << QByteArray("[<< /Type /OCMD /VE [/Not 7 0 R] >>]")
                            << QByteArray("conditions on layers");
    QTest::newRow("form") << QByteArray("<< /NeedsRendering true >>")
                          << QByteArray("a form that only a program can draw");
}

void TestLosses::strange()
{
    QFETCH(QByteArray, object);
    QFETCH(QByteArray, name);
    Document document(with({object}, "/Six 6 0 R"));
    QCOMPARE(QByteArray::fromStdString(engine::unsupportedFeature(document)), name);
}

QTEST_GUILESS_MAIN(TestLosses)
#include "tst_losses.moc"
