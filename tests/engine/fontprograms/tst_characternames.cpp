#include "engine/fontprograms/characternames.h"

#include <QTest>

using engine::BaseEncoding;

class TestCharacterNames : public QObject
{
    Q_OBJECT

private slots:
    void names_data();
    void names();
    void codes_data();
    void codes();
};

void TestCharacterNames::names_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("characters");
    const auto row = [](const char *name, const QString &characters) {
        QTest::newRow(name) << QByteArray(name) << characters;
    };
    row("A", QStringLiteral("A"));
    row("Wgrave", QString(QChar(0x1E80)));
    row("uni0416", QString(QChar(0x0416)));
    QTest::newRow("two that are drawn alike")
        << QByteArray("uni20AC") << QString(QChar(0xA4)) + QChar(0x20AC);
    row("uni04160041", QString(QChar(0x0416))); // a ligature: the first counts
    row("u0416", QString(QChar(0x0416)));
    row("u1F600", QString::fromUcs4(U"\U0001F600"));
    for (const char *nothing : {"uni20A", "uni20AG", "u20A", "u1F60000", "unit", "nosuchname", ""})
        row(nothing, {});
}

void TestCharacterNames::names()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, characters);
    const std::vector<char32_t> found = engine::charactersOf(name.toStdString());
    QCOMPARE(QString::fromUcs4(found.data(), qsizetype(found.size())), characters);
}

void TestCharacterNames::codes_data()
{
    QTest::addColumn<int>("encoding");
    QTest::addColumn<uint>("code");
    QTest::addColumn<uint>("character");
    const auto row = [](const char *name, BaseEncoding encoding, uint code, uint character) {
        QTest::newRow(name) << int(encoding) << code << character;
    };
    row("a letter", BaseEncoding::Standard, 'A', 'A');
    row("a quote of the standard encoding", BaseEncoding::Standard, '\'', 0x2019);
    row("a quote", BaseEncoding::WinAnsi, '\'', '\'');
    row("a control character", BaseEncoding::WinAnsi, 0x1F, 0);
    row("delete", BaseEncoding::MacRoman, 0x7F, 0);
    row("the euro", BaseEncoding::WinAnsi, 0x80, 0x20AC);
    row("A with dots", BaseEncoding::MacRoman, 0x80, 0xC4);
    row("nothing", BaseEncoding::Standard, 0x80, 0);
    row("the last", BaseEncoding::WinAnsi, 0xFF, 0xFF);
    row("beyond", BaseEncoding::WinAnsi, 0x100, 0);
}

void TestCharacterNames::codes()
{
    QFETCH(int, encoding);
    QFETCH(uint, code);
    QFETCH(uint, character);
    QCOMPARE(uint(engine::characterOf(BaseEncoding(encoding), code)), character);
}

QTEST_GUILESS_MAIN(TestCharacterNames)
#include "tst_characternames.moc"
