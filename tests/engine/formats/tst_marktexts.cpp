#include "engine/formats/marktexts.h"

#include <QTest>

class TestMarkTexts : public QObject
{
    Q_OBJECT

private slots:
    void mark_data();
    void mark();
};

void TestMarkTexts::mark_data()
{
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<QByteArray>("title");
    QTest::newRow("plain") << QByteArray("[ /Title (Accounts)\n /Author (Z) \n /DOCINFO pdfmark")
                           << QByteArray("Accounts");
    QTest::newRow("pairs") << QByteArray("[ /Title (a (b) c) /DOCINFO pdfmark")
                           << QByteArray("a (b) c");
    QTest::newRow("escapes") << QByteArray(
                                    "[ /Title (\\(\\\\\\051\\101\\n\\q\\\n.) /DOCINFO pdfmark")
                             << QByteArray("(\\)A\nq.");
    QTest::newRow("empty") << QByteArray("[ /Title () /DOCINFO pdfmark") << QByteArray("");
    QTest::newRow("no end") << QByteArray("[ /Title (a (b) /DOCINFO pdfmark") << QByteArray();
    QTest::newRow("a text with a key in it")
        << QByteArray("[ /Author (/Title (x)) /DOCINFO pdfmark") << QByteArray();
    QTest::newRow("no text") << QByteArray("[ /Title /x /DOCINFO pdfmark") << QByteArray();
    QTest::newRow("nothing") << QByteArray() << QByteArray();
    QTest::newRow("ends in an escape") << QByteArray("[ /Title (a\\") << QByteArray();
}

void TestMarkTexts::mark()
{
    QFETCH(QByteArray, mark);
    QFETCH(QByteArray, title);
    const auto texts = engine::markTexts(mark.toStdString());
    const auto found = texts.find("/Title");
    QCOMPARE(found == texts.end(), title.isNull());
    if (found != texts.end())
        QCOMPARE(QByteArray::fromStdString(found->second), title);
}

QTEST_GUILESS_MAIN(TestMarkTexts)
#include "tst_marktexts.moc"
