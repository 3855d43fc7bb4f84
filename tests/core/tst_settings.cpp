#include "core/settings.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void pathsAreInTheTemporaryFolder();
    void keys_data();
    void keys();
    void numberAndOrderOfKeys();
    void valuesAreReadBackAsWritten_data();
    void valuesAreReadBackAsWritten();
    void absentKeysGiveEngineDefaults();
    void unreadableFileGivesDefaults();
    void unknownKeyIsEmpty();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestSettings::init()
{
    qunsetenv("TMPDIR"); // or the new folder would lie in the old one
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("TMPDIR", QFile::encodeName(m_folder->path()));
}

void TestSettings::pathsAreInTheTemporaryFolder()
{
    QCOMPARE(core::settingsFilePath(), m_folder->path() + u"/corvane.ini"_s);
    QCOMPARE(core::markFilePath(), m_folder->path() + u"/pdfinfo.txt"_s);
}

void TestSettings::keys_data()
{
    using core::Encoding;
    QTest::addColumn<int>("encoding");
    QTest::addColumn<QString>("engineDefault");
    QTest::addColumn<QString>("dialogDefault");

    const QString notRead;
    const auto row = [](const char *name, Encoding encoding, const QString &engine,
                        const QString &dialog) {
        QTest::newRow(name) << static_cast<int>(encoding) << engine << dialog;
    };
    for (const char *flag :
         {"Image/Image", "Fonts/Fonts", "Fonts/Embed", "Fonts/Com", "Fonts/Sub", "Secur/Secur",
          "Secur/AllowPri", "Secur/AllowMod", "Secur/AllowCop", "Secur/AllowAdd", "Annot/Annot"})
        row(flag, Encoding::flag, u"Ok"_s, u"Ok"_s);
    row("Annot/PDFA", Encoding::flag, u"No"_s, u"No"_s);
    for (const char *type : {"Image/ColorType", "Image/GrayType", "Image/MonoType"})
        row(type, Encoding::index, u"3"_s, u"3"_s);
    row("Image/ColorEnc", Encoding::index, u"1"_s, u"1"_s);
    row("Image/GrayEnc", Encoding::index, u"1"_s, u"1"_s);
    row("Image/MonoEnc", Encoding::index, u"1"_s, u"4"_s);
    row("Image/ColorRes", Encoding::text, u"150"_s, u"150"_s);
    row("Image/GrayRes", Encoding::text, u"150"_s, u"150"_s);
    row("Image/MonoRes", Encoding::text, u"300"_s, u"300"_s);
    row("Secur/UsrPwd", Encoding::text, u""_s, u""_s);
    row("Secur/OwrPwd", Encoding::text, u""_s, u""_s);
    for (const char *description :
         {"Annot/Aut", "Annot/Tit", "Annot/Sub", "Annot/Key", "Annot/Cre", "Annot/Pro"})
        row(description, Encoding::text, notRead, u""_s);
    row("dir/input", Encoding::text, u"."_s, notRead);
    row("dir/output", Encoding::text, u"."_s, notRead);
}

void TestSettings::keys()
{
    const auto all = core::settingsKeys();
    const auto key =
        std::ranges::find(all, QLatin1String(QTest::currentDataTag()), &core::SettingsKey::name);
    QVERIFY(key != all.end());
    QTEST(static_cast<int>(key->encoding), "encoding");
    QFETCH(QString, engineDefault);
    QFETCH(QString, dialogDefault);
    QCOMPARE(QString(key->engineDefault), engineDefault);
    QCOMPARE(key->engineDefault.isNull(), engineDefault.isNull());
    QCOMPARE(QString(key->dialogDefault), dialogDefault);
    QCOMPARE(key->dialogDefault.isNull(), dialogDefault.isNull());
}

void TestSettings::numberAndOrderOfKeys()
{
    QStringList names;
    for (const core::SettingsKey &key : core::settingsKeys())
        names.append(key.name);
    QCOMPARE(names.join(u' '),
             u"Image/Image Image/ColorType Image/ColorRes Image/ColorEnc Image/GrayType"
             " Image/GrayRes Image/GrayEnc Image/MonoType Image/MonoRes Image/MonoEnc Fonts/Fonts"
             " Fonts/Embed Fonts/Com Fonts/Sub Secur/Secur Secur/UsrPwd Secur/OwrPwd"
             " Secur/AllowPri Secur/AllowMod Secur/AllowCop Secur/AllowAdd Annot/Annot Annot/PDFA"
             " Annot/Aut Annot/Tit Annot/Sub Annot/Key Annot/Cre Annot/Pro dir/input dir/output"_s);
}

void TestSettings::valuesAreReadBackAsWritten_data()
{
    QTest::addColumn<QString>("value");

    QTest::newRow("empty") << QString(u""_s);
    QTest::newRow("blanks") << u"  1 2  "_s;
    QTest::newRow("comma") << u"a, b,c"_s;
    QTest::newRow("INI syntax") << u"[x]\n;y=\"z\"\\%41"_s;
    QTest::newRow("at sign") << u"@Variant(1)"_s;
    QTest::newRow("non-ASCII") << u"Zoë 報告書 🔒"_s;
}

void TestSettings::valuesAreReadBackAsWritten()
{
    QFETCH(QString, value);
    {
        QSettings written(core::settingsFilePath(), QSettings::IniFormat);
        written.setValue(u"Secur/UsrPwd"_s, value);
    }
    const QSettings settings(core::settingsFilePath(), QSettings::IniFormat);
    QCOMPARE(core::engineValue(settings, "Secur/UsrPwd"_L1), value);
    QCOMPARE(core::engineValues(settings).value(u"Secur/UsrPwd"_s), value);
}

void TestSettings::absentKeysGiveEngineDefaults()
{
    const QSettings settings(core::settingsFilePath(), QSettings::IniFormat);
    const core::Values values = core::engineValues(settings);
    QCOMPARE(values.size(), qsizetype(25));
    QCOMPARE(values.value(u"Image/MonoEnc"_s), u"1"_s);
    QCOMPARE(core::engineValue(settings, "dir/input"_L1), u"."_s);
    QCOMPARE(core::engineValue(settings, "dir/output"_L1), u"."_s);
    QVERIFY(!QFile::exists(core::settingsFilePath()));
}

void TestSettings::unreadableFileGivesDefaults()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"corvane.ini"_s));
    const QSettings settings(core::settingsFilePath(), QSettings::IniFormat);
    QCOMPARE(core::engineValue(settings, "Image/MonoRes"_L1), u"300"_s);
}

void TestSettings::unknownKeyIsEmpty()
{
    const QSettings settings(core::settingsFilePath(), QSettings::IniFormat);
    QCOMPARE(core::engineValue(settings, "Image/Nothing"_L1), QString());
}

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
