#include "documents.h"
#include "parsed.h"

#include "engine/pdfa/links.h"
#include "engine/pdfa/losses.h"

#include <QTest>

#include <qpdf/QPDFPageDocumentHelper.hh>

using namespace parsed;

class TestLinks : public QObject
{
    Q_OBJECT

private slots:
    void misleadingLinks_data();
    void misleadingLinks();
    void linksComeBack();
    void linksKeepTheirLooks();
    void linksOfAMovedPageDont();
    void opensWhereTheOriginalDoes_data();
    void opensWhereTheOriginalDoes();
};

void TestLinks::misleadingLinks_data()
{
    QTest::addColumn<QByteArray>("box"); // in the copy it is [0 0 200 200]
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<bool>("misleads");
    const QByteArray moved = "/MediaBox [50 50 250 250]";
    const QByteArray place = "/Dest [4 0 R /XYZ 60 200 0]";
    QTest::newRow("same place") << QByteArray("/MediaBox [0 0 200 200]") << place << false;
    QTest::newRow("rounded") << QByteArray("/MediaBox [0 0 200.004 199.996]") << place << false;
    for (const char *box :
         {"/MediaBox [50 50 250 250]", "/MediaBox [0 1 200 200]", "/MediaBox [0 0 201 200]",
          "/MediaBox [0 0 200 201]", "/MediaBox [0 0 200 200] /Rotate 90",
          "/MediaBox [0 0 200 200] /UserUnit 2"})
        QTest::newRow(box) << QByteArray(box) << place << true;
    QTest::newRow("place on a page that stays")
        << moved << QByteArray("/Dest [3 0 R /XYZ 60 200 0]") << true; // both pages have that box
    for (const char *target : {"/Dest /end", "/Dest [4 0 R /FitH 9]", "/Dest [4 0 R /XYZ null 9 0]",
                               "/Dest [4 0 R /XYZ 1 0 0]", "/Dest [4 0 R /FitR 0 0 0 9]",
                               "/A << /S /GoTo /D [4 0 R /XYZ 60 200 0] >>",
                               "/A << /S /GoTo /D << /D [4 0 R /XYZ 60 200 0] >> >>"})
        QTest::newRow(target) << moved << QByteArray(target) << true;
    for (const char *target :
         {"/Dest [4 0 R /Fit]", "/Dest [4 0 R]", "/Dest [4 0 R /XYZ null null 0]",
          "/Dest [4 0 R /XYZ 0 0 0]", "/Dest [9 0 R /XYZ 60 200 0]", "/Dest /nowhere", "/Dest 7",
          "/A << /S /GoToR /F (b.pdf) /D [0 /XYZ 60 200 0] >>", "/A << /S /URI /URI (x:) >>"})
        QTest::newRow(target) << moved << QByteArray(target) << false;
}

void TestLinks::misleadingLinks()
{
    QFETCH(QByteArray, box);
    QFETCH(QByteArray, target);
    QFETCH(bool, misleads);
    const QByteArray link = "<< /Type /Annot /Subtype /Link /Rect [0 0 9 9] ";
    Document original(documents::links(box, {}, link + target + " >>"));
    Document copy(documents::links("/MediaBox [0 0 200 200]", {}, {}));
    QCOMPARE(engine::misleadsLinks(copy, original), misleads);
}

void TestLinks::linksComeBack()
{
    Document original(documents::links());
    Document copy(documents::links("/MediaBox [0 0 200 200]", {},
                                   "<< /Type /Annot /Subtype /Text /Rect [0 0 9 9] >>"));
    engine::restoreLinks(copy, original, true);
    QCOMPARE(engine::linksOf(copy), 2U);
    auto page = QPDFPageDocumentHelper(copy).getAllPages().front();
    QCOMPARE(page.getAnnotations("/Text").size(), 1U);
    auto link = page.getAnnotations("/Link").front().getObjectHandle();
    QCOMPARE(link.getKey("/F").getIntValue(), 4);
    auto second = QPDFPageDocumentHelper(copy).getAllPages().back().getObjectHandle();
    QCOMPARE(link.getKey("/Dest").getArrayItem(0).getObjGen().getObj(),
             second.getObjGen().getObj());
}

// And nothing that leads back into the original.
void TestLinks::linksKeepTheirLooks()
{
    const QByteArray looks = "/BS << /W 2 >> /Border [ 1 1 1 ] /C [ 1 0 0 ] /Contents (here) /F 8 "
                             "/H /P /QuadPoints [ 0 0 9 0 9 9 0 9 ] /Rect [ 0 0 9 9 ]";
    Document original(documents::links("/MediaBox [0 0 200 200]", {},
                                       "<< /Type /Annot /Subtype /Link /P 3 0 R /StructParent 1 " +
                                           looks + " >>"));
    Document copy(documents::links("/MediaBox [0 0 200 200]", {}, {}));
    engine::restoreLinks(copy, original, false);
    auto link = QPDFPageDocumentHelper(copy).getAllPages().front().getAnnotations("/Link").front();
    const QByteArray expected = "<< " + looks + " /Subtype /Link /Type /Annot >>";
    QCOMPARE(QByteArray::fromStdString(link.getObjectHandle().unparseResolved()), expected);
}

void TestLinks::linksOfAMovedPageDont()
{
    Document original(documents::links("/MediaBox [50 50 250 250]"));
    Document copy(documents::links("/MediaBox [0 0 200 200]", {}, {}));
    engine::restoreLinks(copy, original, false);
    QCOMPARE(engine::linksOf(copy), 0U);
}

void TestLinks::opensWhereTheOriginalDoes_data()
{
    QTest::addColumn<QByteArray>("opening");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray place = "[ 4 0 R /XYZ 60 200 0 ]";
    QTest::newRow("place") << place << place;
    QTest::newRow("action") << "<< /S /GoTo /D " + place + " >>" << place;
    QTest::newRow("name") << QByteArray("/end") << place;
    QTest::newRow("script") << QByteArray("<< /S /JavaScript /JS (app.beep\\(0\\)) >>")
                            << QByteArray("null");
    QTest::newRow("nowhere") << QByteArray("/nowhere") << QByteArray("null");
    QTest::newRow("page that is none") << QByteArray("[ 9 0 R /Fit ]") << QByteArray("null");
}

void TestLinks::opensWhereTheOriginalDoes()
{
    QFETCH(QByteArray, opening);
    const QByteArray plain = documents::links();
    QByteArray other = documents::links({}, {}, {}, "/OpenAction " + opening);
    Document original(other);
    Document copy(plain);
    engine::restoreLinks(copy, original, false);
    auto found = copy->getRoot().getKey("/OpenAction");
    QTEST(QByteArray::fromStdString(found.unparse()), "expected");
}

QTEST_GUILESS_MAIN(TestLinks)
#include "tst_links.moc"
