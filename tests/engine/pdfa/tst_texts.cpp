#include "parsed.h"

#include "engine/pdfa/texts.h"

#include <QTest>

using namespace parsed;

class TestTexts : public QObject
{
    Q_OBJECT

private slots:
    void lostText_data();
    void lostText();
};

void TestTexts::lostText_data()
{
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<bool>("hasText");
    for (const char *content : {"(a) Tj", "(a) '", "0 0 (a) \"", "[9 (a)] TJ", "[() 9 [] (a)] TJ"})
        QTest::newRow(content) << showing(content, {formOf({})}) << true;
    for (const char *content : {"() Tj", "[9 ()] TJ", "[] TJ", "(a) Do", "7 Tj"})
        QTest::newRow(content) << showing(content, {formOf({})}) << false;
    const QByteArray holder = "/Subtype /Form /Resources << /XObject << /Y 6 0 R >> >>";
    QTest::newRow("form") << showing("/X Do", {formOf("(a) Tj")}) << true;
    QTest::newRow("form in a form")
        << showing("/X Do", {formOf("/Y Do", holder), formOf("(a) Tj")}) << true;
    QTest::newRow("no form") << showing("/X Do", {formOf("(a) Tj", "/Subtype /Image")}) << false;
    QTest::newRow("form that draws itself")
        << showing("/X Do",
                   {formOf("/X Do", "/Subtype /Form /Resources << /XObject << /X 5 0 R >> >>")})
        << false;
}

void TestTexts::lostText()
{
    QFETCH(QByteArray, original);
    QFETCH(bool, hasText);
    Document before(original);
    Document blank(showing({}, {formOf({})}));
    QCOMPARE(engine::losesText(blank, before), hasText);
    Document same(original);
    QVERIFY(!engine::losesText(same, before));
}

QTEST_GUILESS_MAIN(TestTexts)
#include "tst_texts.moc"
