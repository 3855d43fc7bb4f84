// What is found in a document: its pages, its images, its objects.
#include "documents.h"
#include "parsed.h"
#include "samples.h"

#include "engine/images/bilevelbitmap.h"
#include "engine/pdf/document.h"
#include "engine/pdf/walk.h"

#include <QTemporaryFile>
#include <QTest>

using namespace parsed;

class TestContents : public QObject
{
    Q_OBJECT

private slots:
    void pagesOfADocument_data();
    void pagesOfADocument();
    void bilevel_data();
    void bilevel();
    void drawnOnce();
    void drawnFarDown();
    void reachable();
};

void TestContents::pagesOfADocument_data()
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

void TestContents::pagesOfADocument()
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

void TestContents::bilevel_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<bool>("is");
    QTest::newRow("/ImageMask true") << QByteArray("/ImageMask true") << true;
    QTest::newRow("/ImageMask false") << QByteArray("/ImageMask false") << false;
    for (const char *space :
         {"/DeviceGray", "/CalGray", "[/DeviceGray]", "[/CalGray << >>]", "[/ICCBased 7 0 R]",
          "[/Indexed /DeviceRGB 1 <000000ffffff>]", "[/Separation /Black /DeviceGray 9 0 R]"})
        QTest::newRow(space) << "/BitsPerComponent 1 /ColorSpace " + QByteArray(space) << true;
    for (const char *space :
         {"/DeviceRGB", "/DeviceCMYK", "[/DeviceRGB]", "[]", "[/ICCBased 8 0 R]", "[/ICCBased 7]",
          "[/CalRGB << >>]", "[/DeviceN [/A /B] /DeviceRGB 9 0 R]", "null"})
        QTest::newRow(space) << "/BitsPerComponent 1 /ColorSpace " + QByteArray(space) << false;
    for (const char *bits : {"2", "8", "1.0", "/One"})
        QTest::newRow(bits) << "/ColorSpace /DeviceGray /BitsPerComponent " + QByteArray(bits)
                            << false;
    const QByteArray gray = "/ColorSpace /DeviceGray /BitsPerComponent 1 ";
    QTest::newRow("mask of colours") << gray + "/Mask [0 0]" << false;
    QTest::newRow("mask of its own") << gray + "/Mask 7 0 R" << true;
}

void TestContents::bilevel()
{
    QFETCH(QByteArray, entries);
    QFETCH(bool, is);
    const QList<QByteArray> objects = {formOf({}), formOf({}, "/Subtype /Image " + entries),
                                       pdfStream("/N 1", {}), pdfStream("/N 3", {})};
    Document document(showing({}, objects));
    QCOMPARE(engine::isBilevelImage(document->getObject(6, 0)), is);
    QVERIFY(!engine::isBilevelImage(document->getObject(5, 0)));
    QVERIFY(!engine::isBilevelImage(document->getObject(3, 0)));
}

void TestContents::drawnOnce()
{
    const QByteArray holder = "/Subtype /Form /Resources << /XObject << /Y 6 0 R /Z 5 0 R >> >>";
    Document document(showing({}, {formOf({}, holder), formOf({}, "/Subtype /Image")}));
    std::vector<int> numbers;
    auto objects = engine::drawnObjects(document);
    for (auto &object : objects)
        numbers.push_back(object.getObjectID());
    QCOMPARE(numbers, std::vector<int>({5, 6}));
}

// Forms within forms without end are nobody's drawing.
void TestContents::drawnFarDown()
{
    QList<QByteArray> forms;
    for (int number = 5; number < 505; ++number)
        forms << formOf({}, "/Subtype /Form /Resources << /XObject << /X " +
                                QByteArray::number(number + 1) + " 0 R >> >>");
    Document document(showing({}, forms));
    const auto count = engine::drawnObjects(document).size();
    QVERIFY2(count >= 28 && count < 500, std::to_string(count).c_str());
}

void TestContents::reachable()
{
    Document document(
        with({"<< /Inner << /Deep [<< /Last true >>] >> >>", "(nobody's)"}, "/Six 6 0 R"));
    QCOMPARE(engine::reachableObjects(document).size(), 6U);
    int last = 0;
    auto dictionaries = engine::reachableDictionaries(document);
    for (auto &dictionary : dictionaries)
        last += int(dictionary.hasKey("/Last"));
    QCOMPARE(last, 1);
}

QTEST_GUILESS_MAIN(TestContents)
#include "tst_engine_contents.moc"
