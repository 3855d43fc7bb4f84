// The outline of an original comes back whole where the copy has less of it.
#include "documents.h"
#include "parsed.h"

#include "engine/pdfa/outline.h"

#include <QTest>

#include <qpdf/QPDFOutlineDocumentHelper.hh>

using namespace parsed;

namespace {

// The page is object 3.
QByteArray outlined()
{
    return with({"<< /Type /Outlines /First 7 0 R /Last 9 0 R /Count 3 >>",
                 "<< /Title (One) /Parent 6 0 R /Next 9 0 R /First 8 0 R /Last 8 0 R /Count 1"
                 " /Dest [3 0 R /XYZ 10 20 0] >>",
                 "<< /Title (Below) /Parent 7 0 R /F 2 /A << /S /URI /URI (http://a/) >> >>",
                 "<< /Title (Nowhere) /Parent 6 0 R /Prev 7 0 R"
                 " /A << /S /JavaScript /JS (beep) >> >>"},
                "/Outlines 6 0 R");
}

std::vector<QPDFOutlineObjectHelper> topOf(QPDF &document)
{
    return QPDFOutlineDocumentHelper(document).getTopLevelOutlines();
}

} // namespace

class TestOutline : public QObject
{
    Q_OBJECT

private slots:
    void comesBack();
    void staysIfNothingIsMissing();
    void cyclesEnd();
};

void TestOutline::comesBack()
{
    Document original(outlined());
    Document copy(with({"<< /First 7 0 R /Last 7 0 R /Count 1 >>", "<< /Title (Other) >>"},
                       "/Outlines 6 0 R"));
    engine::restoreOutline(copy, original);
    QCOMPARE(engine::outlineEntries(copy), 3U);
    const auto top = topOf(copy);
    QCOMPARE(top.size(), 2U);
    QPDFOutlineObjectHelper one = top[0];
    QCOMPARE(one.getTitle(), std::string("One"));
    QCOMPARE(one.getDestPage().getObjGen(), copy->getAllPages()[0].getObjGen());
    QCOMPARE(one.getCount(), 1);
    QPDFOutlineObjectHelper below = one.getKids().at(0);
    QCOMPARE(below.getTitle(), std::string("Below"));
    QVERIFY(below.getObjectHandle().getKey("/A").getKey("/S").isNameAndEquals("/URI"));
    QPDFOutlineObjectHelper nowhere = top[1];
    QCOMPARE(nowhere.getTitle(), std::string("Nowhere"));
    QVERIFY(!nowhere.getObjectHandle().hasKey("/A"));
    QVERIFY(nowhere.getDest().isNull());
    QCOMPARE(copy->getRoot().getKey("/Outlines").getKey("/Count").getIntValue(), 3);
}

void TestOutline::staysIfNothingIsMissing()
{
    Document original(outlined());
    Document copy(outlined());
    engine::restoreOutline(copy, original);
    QCOMPARE(copy->getRoot().getKey("/Outlines").getObjectID(), 6);
}

void TestOutline::cyclesEnd()
{
    Document original(with({"<< /First 7 0 R /Last 7 0 R >>",
                            "<< /Title (One) /First 7 0 R /Last 7 0 R /Next 7 0 R >>"},
                           "/Outlines 6 0 R"));
    Document copy(with({}));
    engine::restoreOutline(copy, original);
    QCOMPARE(engine::outlineEntries(copy), engine::outlineEntries(original));
}

QTEST_GUILESS_MAIN(TestOutline)
#include "tst_outline.moc"
