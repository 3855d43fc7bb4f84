#include "engine/formats/tounicode.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestToUnicode : public QObject
{
    Q_OBJECT

private slots:
    void letters_data();
    void letters();
    void lettersEnd();
};

void TestToUnicode::letters_data()
{
    QTest::addColumn<QByteArray>("cmap");
    QTest::addColumn<QStringList>("letters"); // code=letters, in hex
    QTest::newRow("codes") << QByteArray(
                                  "2 beginbfchar\n<0044> <0061>\n<004B><062D064E>\nendbfchar")
                           << QStringList{u"0044=0061"_s, u"004b=062d064e"_s};
    QTest::newRow("range") << QByteArray("beginbfrange <00fe> <0101> <00fe> endbfrange")
                           << QStringList{u"00fe=00fe"_s, u"00ff=00ff"_s, u"0100=0100"_s,
                                          u"0101=0101"_s};
    QTest::newRow("list") << QByteArray("beginbfrange <01> <02> [<0041> <00420043>] endbfrange")
                          << QStringList{u"01=0041"_s, u"02=00420043"_s};
    QTest::newRow("both") << QByteArray("1 beginbfchar <03> <0041> endbfchar /x << /y 1 >> "
                                        "1 beginbfrange <05> <05> <0042> endbfrange")
                          << QStringList{u"03=0041"_s, u"05=0042"_s};
    QTest::newRow("nothing for a code")
        << QByteArray("beginbfchar <03> <> endbfchar") << QStringList{u"03="_s};
    QTest::newRow("code space only")
        << QByteArray("begincodespacerange <00> <ff> endcodespacerange") << QStringList();
    QTest::newRow("cut off") << QByteArray("beginbfchar <03> <0041> <04")
                             << QStringList{u"03=0041"_s};
    QTest::newRow("nonsense") << QByteArray("beginbfrange <01> ] [ <02> >> <zz") << QStringList();
    QTest::newRow("backwards") << QByteArray("beginbfrange <05> <01> <0041> endbfrange")
                               << QStringList{u"05=0041"_s};
}

void TestToUnicode::letters()
{
    QFETCH(QByteArray, cmap);
    QStringList letters;
    for (const auto &[code, meaning] : engine::lettersOfCodes(cmap.toStdString())) {
        letters << QString::fromLatin1(QByteArray::fromStdString(code).toHex() + '=' +
                                       QByteArray::fromStdString(meaning).toHex());
    }
    QTEST(letters, "letters");
}

void TestToUnicode::lettersEnd()
{
    const auto letters =
        engine::lettersOfCodes("beginbfrange <00000000> <ffffffff> <00000041> endbfrange");
    QCOMPARE(letters.size(), std::size_t(65536));
}

QTEST_GUILESS_MAIN(TestToUnicode)
#include "tst_tounicode.moc"
