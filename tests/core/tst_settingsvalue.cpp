#include "core/settings.h"
#include "core/settingsvalue.h"

#include <QTest>

class TestSettingsValue : public QObject
{
    Q_OBJECT

private slots:
    void keys();
    void values_data();
    void values();
    void defaultsAreValues();
    void words_data();
    void words();
};

void TestSettingsValue::keys()
{
    QStringList found;
    for (const core::SettingsKey &key : core::settingsKeys()) {
        if (core::isEngineKey(key.name))
            found.append(key.name);
    }
    const QStringList expected = {
        "Image/Image",    "Image/ColorType", "Image/ColorRes", "Image/ColorEnc", "Image/GrayType",
        "Image/GrayRes",  "Image/GrayEnc",   "Image/MonoType", "Image/MonoRes",  "Image/MonoEnc",
        "Fonts/Fonts",    "Fonts/Embed",     "Fonts/Com",      "Fonts/Sub",      "Secur/Secur",
        "Secur/UsrPwd",   "Secur/OwrPwd",    "Secur/AllowPri", "Secur/AllowMod", "Secur/AllowCop",
        "Secur/AllowAdd", "Annot/Annot",     "Annot/PDFA"};
    QCOMPARE(found, expected);
    for (const char *key : {"", "Image", "Image/", "image/image", "Annot/Tit", "dir/output"})
        QVERIFY2(!core::isEngineKey(key), key);
}

void TestSettingsValue::values_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("good");
    QTest::addColumn<QStringList>("bad");
    const QStringList noFlags = {"", "ok", "OK", "Yes", "1", " Ok"};
    QTest::newRow("flag") << "Fonts/Sub" << QStringList{"Ok", "No"} << noFlags;
    QTest::newRow("flag that is off") << "Annot/PDFA" << QStringList{"Ok", "No"} << noFlags;
    const QStringList noIndex = {"", "-1", "a", "1.0", "01", "+1", " 1"};
    QTest::newRow("four items") << "Image/GrayType" << QStringList{"0", "3"}
                                << noIndex + QStringList{"4"};
    QTest::newRow("three items") << "Image/ColorEnc" << QStringList{"0", "2"}
                                 << noIndex + QStringList{"3"};
    QTest::newRow("five items") << "Image/MonoEnc" << QStringList{"0", "4"}
                                << noIndex + QStringList{"5"};
    QTest::newRow("resolution") << "Image/ColorRes" << QStringList{"1", "150", "9999"}
                                << QStringList{"", "0", "-1", "10000", "150dpi", "1 50"};
    QTest::newRow("password") << "Secur/UsrPwd" << QStringList{"", "a", "=", "'", "ä"}
                              << QStringList{" ", "a b", "a\tb", "a\u00a0b", "\"a\""};
}

void TestSettingsValue::values()
{
    QFETCH(QString, key);
    QFETCH(QStringList, good);
    QFETCH(QStringList, bad);
    for (const QString &value : good)
        QVERIFY2(core::isValueOf(key, value), qPrintable(value));
    for (const QString &value : bad)
        QVERIFY2(!core::isValueOf(key, value), qPrintable(value));
}

void TestSettingsValue::defaultsAreValues()
{
    for (const core::SettingsKey &key : core::settingsKeys()) {
        if (core::isEngineKey(key.name))
            QVERIFY2(core::isValueOf(key.name, key.engineDefault), key.name.data());
    }
}

void TestSettingsValue::words_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("expected");
    QTest::newRow("flag") << "Fonts/Sub"
                          << "Ok or No";
    QTest::newRow("index") << "Image/MonoEnc"
                           << "0 to 4";
    QTest::newRow("resolution") << "Image/MonoRes"
                                << "1 to 9999 dpi";
    QTest::newRow("password") << "Secur/OwrPwd"
                              << "text without blanks and double quotes";
}

void TestSettingsValue::words()
{
    QFETCH(QString, key);
    QTEST(core::valuesText(key), "expected");
}

QTEST_GUILESS_MAIN(TestSettingsValue)
#include "tst_settingsvalue.moc"
