#include "samples.h"

#include "engine/pdf/document.h"

#include <QTemporaryFile>
#include <QTest>

class TestDocument : public QObject
{
    Q_OBJECT

private slots:
    void pagesOfADocument_data();
    void pagesOfADocument();
    void pagesOfALargeDocument();
};

void TestDocument::pagesOfADocument_data()
{
    QTest::addColumn<QByteArray>("entries"); // of the page tree, whose one page is the third object
    QTest::addColumn<int>("pages");
    QTest::addColumn<bool>("sound");
    QTest::newRow("right") << QByteArray("/Count 1 /Kids [3 0 R]") << 1 << true;
    for (const char *count : {"/Count 2", "/Count 0", "/Count -1", "/Count 1.0", "/Tally 1"})
        QTest::newRow(count) << count + QByteArray(" /Kids [3 0 R]") << 1 << false;
    QTest::newRow("right below") << QByteArray("/Count 1 /Kids [6 0 R]") << 1 << true;
    QTest::newRow("wrong below") << QByteArray("/Count 1 /Kids [7 0 R]") << 1 << false;
    QTest::newRow("endless") << QByteArray("/Count 5 /Kids [3 0 R 2 0 R]") << 5 << false;
}

void TestDocument::pagesOfADocument()
{
    QFETCH(QByteArray, entries);
    QFETCH(int, pages);
    QFETCH(bool, sound);
    const QByteArray below = "<< /Type /Pages /Parent 2 0 R /Kids [3 0 R] /Count ";
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(pdfOf({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages " + entries + " >>",
                      "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>", "null", "null",
                      below + "1 >>", below + "2 >>"}));
    QVERIFY(file.flush());

    engine::Document document(file.handle(), engine::Trust::Foreign);
    QVERIFY(document.isSound());
    try {
        document.repair();
    } catch (const std::exception &) {
        QVERIFY(!sound);
    }
    QCOMPARE(document.pages(), pages);
    QCOMPARE(document.isSound(), sound);
    auto tree = document.pdf().getRoot().getKey("/Pages");
    QCOMPARE(tree.getKey("/Count").getIntValue(), pages);
    if (pages == 1 && tree.getKey("/Kids").getArrayItem(0).hasKey("/Kids"))
        QCOMPARE(tree.getKey("/Kids").getArrayItem(0).getKey("/Count").getIntValue(), 1);
}

// More than is read at once.
void TestDocument::pagesOfALargeDocument()
{
    const QByteArray bytes((64 << 20) + 1, ' ');
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(
        pdfOf({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
               "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Contents 4 0 R >>",
               pdfStream({}, bytes)}));
    QVERIFY(file.flush());

    engine::Document document(file.handle(), engine::Trust::Own);
    QCOMPARE(document.pages(), 1);
    QVERIFY(document.isSound());
}

QTEST_GUILESS_MAIN(TestDocument)
#include "tst_document.moc"
