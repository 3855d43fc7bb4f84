#include "parsed.h"
#include "samples.h"

#include "engine/pdf/description.h"

#include <QTest>

using namespace parsed;

namespace {

QByteArray described(const QByteArray &information)
{
    return pdfOf({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
                  "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] >>", information})
        .replace("trailer << ", "trailer << /Info 4 0 R ");
}

} // namespace

class TestDescription : public QObject
{
    Q_OBJECT

private slots:
    void descriptionOfTheCopy();
    void ownEntriesAndProducer();
};

// What both have is the copy's, and what only one has stays.
void TestDescription::descriptionOfTheCopy()
{
    Document document(described("<< /Title (Old) /Company (Parish) /Odd 2 0 R >>"));
    Document copy(described("<< /Title (New) /Author (Zo\303\253) >>"));
    engine::takeDescription(document, copy);
    auto information = document->getTrailer().getKey("/Info");
    QCOMPARE(information.getKey("/Title").getUTF8Value(), std::string("New"));
    QCOMPARE(information.getKey("/Author").getUTF8Value(), std::string("Zo\u00eb"));
    QCOMPARE(information.getKey("/Company").getUTF8Value(), std::string("Parish"));
    QVERIFY(!information.hasKey("/Odd"));
    QVERIFY(!document->getRoot().hasKey("/Metadata"));
}

void TestDescription::ownEntriesAndProducer()
{
    Document original(described("<< /Title (Old) /Company (Parish) /Odd 2 0 R /Trapped (x) >>"));
    Document copy(described("<< /Producer (Engine) /Region (North) >>"));
    engine::restoreOwnEntries(copy, original);
    auto information = copy->getTrailer().getKey("/Info");
    QCOMPARE(information.getKey("/Company").getUTF8Value(), std::string("Parish"));
    QCOMPARE(information.getKey("/Region").getUTF8Value(), std::string("North"));
    for (const char *key : {"/Title", "/Odd", "/Trapped"})
        QVERIFY2(!information.hasKey(key), key);

    engine::markProducer(copy, {{"/Title", "New"}});
    QCOMPARE(information.getKey("/Producer").getUTF8Value(), std::string("Engine"));
    engine::markProducer(copy, {{"/Producer", "Parish office"}});
    QCOMPARE(information.getKey("/Producer").getUTF8Value(), std::string("Parish office"));
}

QTEST_GUILESS_MAIN(TestDescription)
#include "tst_description.moc"
