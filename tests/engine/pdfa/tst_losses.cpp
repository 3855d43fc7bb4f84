#include "documents.h"
#include "parsed.h"
#include "samples.h"

#include "engine/pdfa/losses.h"

#include <QTest>

using namespace parsed;

class TestLosses : public QObject
{
    Q_OBJECT

private slots:
    void losses_data();
    void losses();
    void unsupportedFeatures_data();
    void unsupportedFeatures();
};

void TestLosses::losses_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<QByteArray>("loss");
    QTest::newRow("nothing") << with({}) << QByteArray();
    QTest::newRow("links") << documents::links() << QByteArray("links");
    const QList<QByteArray> outline = {
        "<< /Type /Outlines /First 7 0 R /Last 7 0 R /Count 1 >>",
        "<< /Title (One) /Parent 6 0 R /First 8 0 R /Last 8 0 R /Count 1 >>",
        "<< /Title (Below) /Parent 7 0 R >>"};
    QTest::newRow("outline") << with(outline, "/Outlines 6 0 R") << QByteArray("outline entries");
}

// An outline keeps its first entry in the copy; of the others nothing is left.
void TestLosses::losses()
{
    QFETCH(QByteArray, original);
    QFETCH(QByteArray, loss);
    Document before(original);
    Document after(
        with({"<< /First 7 0 R /Last 7 0 R >>", "<< /Title (One) >>"}, "/Outlines 6 0 R"));
    QCOMPARE(QByteArray::fromStdString(engine::lossOf(after, before)), loss);
    Document again(original);
    QCOMPARE(QByteArray::fromStdString(engine::lossOf(again, before)), QByteArray());
}

void TestLosses::unsupportedFeatures_data()
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

void TestLosses::unsupportedFeatures()
{
    QFETCH(QByteArray, object);
    QFETCH(QByteArray, name);
    Document document(with({object}, "/Six 6 0 R"));
    QCOMPARE(QByteArray::fromStdString(engine::unsupportedFeature(document)), name);
}

QTEST_GUILESS_MAIN(TestLosses)
#include "tst_losses.moc"
