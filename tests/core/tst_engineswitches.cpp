#include "core/engineswitches.h"
#include "support/defaultline.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// Every key at its engine default, as without a settings file.
core::Values defaults()
{
    core::Values values;
    for (const core::SettingsKey &key : core::settingsKeys()) {
        if (!key.engineDefault.isNull())
            values.insert(key.name, key.engineDefault);
    }
    return values;
}

core::Values with(const QString &key, const QString &value)
{
    core::Values values = defaults();
    values.insert(key, value);
    return values;
}

struct ImageRow
{
    const char *value;
    const char *expected;
};

// Pieces of the defaults, in the order of the line.
constexpr auto colourType = " -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic"_L1;
constexpr auto colourRes = " -dColorImageResolution=150"_L1;
constexpr auto colourFilter = " -dAutoFilterColorImages=false -dColorImageFilter=/DCTEncode"_L1;
constexpr auto grayType = " -dGrayImageDownsampleType=/Bicubic"_L1;
constexpr auto grayRes = " -dGrayImageResolution=150"_L1;
constexpr auto grayFilter = " -dAutoFilterGrayImages=false -dGrayImageFilter=/DCTEncode"_L1;
constexpr auto monoType = " -dDownsampleMonoImages=true -dMonoImageDownsampleType=/Bicubic"_L1;
constexpr auto monoRes = " -dMonoImageResolution=300"_L1;
constexpr auto monoFilter = " -dAutoFilterMonoImages=false -dMonoImageFilter=/FlateEncode"_L1;

} // namespace

class TestEngineSwitches : public QObject
{
    Q_OBJECT

private slots:
    void base();
    void withoutSettingsFile();
    void imagePiece_data();
    void imagePiece();
    void resolutions_data();
    void resolutions();
    void fonts_data();
    void fonts();
    void passwords_data();
    void passwords();
    void permissions_data();
    void permissions();
    void pdfa_data();
    void pdfa();
    void pagesSwitchedOff();
    void onlyNoSwitchesAPageOff_data();
    void onlyNoSwitchesAPageOff();
};

void TestEngineSwitches::base()
{
    QCOMPARE(core::baseSwitches(), QString(defaultline::base));
}

void TestEngineSwitches::withoutSettingsFile()
{
    const core::Values values = defaults();
    QCOMPARE(core::imageSwitches(values) + core::fontSwitches(values) +
                 core::securitySwitches(values) + core::pdfaSwitches(values),
             QString(defaultline::images) + defaultline::fonts + defaultline::permissions);
}

// Each row changes one key of the defaults; the column says what its piece becomes.
void TestEngineSwitches::imagePiece_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");

    const auto rows = [](const char *key, QLatin1String before, const QList<ImageRow> &table) {
        for (const ImageRow &row : table) {
            QTest::addRow("%s=%s", key, row.value)
                << QString::fromLatin1(key) << QString::fromLatin1(row.value) << QString(before)
                << QString::fromLatin1(row.expected);
        }
    };
    rows("Image/ColorType", colourType,
         {{"0", " -dDownsampleColorImages=false"},
          {"1", " -dDownsampleColorImages=true -dColorImageDownsampleType=/Subsample"},
          {"2", " -dDownsampleColorImages=true -dColorImageDownsampleType=/Average"},
          {"3", " -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic"},
          {"7", " -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic"},
          {"", " -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic"},
          {"00", " -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic"},
          {"none", " -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic"}});
    rows("Image/GrayType", grayType,
         {{"0", " -dDownsampleGrayImages=false"},
          {"1", " -dGrayImageDownsampleType=/Subsample"},
          {"2", " -dGrayImageDownsampleType=/Average"},
          {"3", " -dGrayImageDownsampleType=/Bicubic"},
          {" 0", " -dGrayImageDownsampleType=/Bicubic"}});
    rows("Image/MonoType", monoType,
         {{"0", " -dDownsampleMonoImages=false"},
          {"1", " -dDownsampleMonoImages=true -dMonoImageDownsampleType=/Subsample"},
          {"2", " -dDownsampleMonoImages=true -dMonoImageDownsampleType=/Average"},
          {"3", " -dDownsampleMonoImages=true -dMonoImageDownsampleType=/Bicubic"},
          {"-1", " -dDownsampleMonoImages=true -dMonoImageDownsampleType=/Bicubic"}});
    rows("Image/ColorEnc", colourFilter,
         {{"0", " -dAutoFilterColorImages=true"},
          {"1", " -dAutoFilterColorImages=false -dColorImageFilter=/DCTEncode"},
          {"2", " -dAutoFilterColorImages=false -dColorImageFilter=/FlateEncode"},
          {"3", " -dAutoFilterColorImages=false -dColorImageFilter=/DCTEncode"}});
    rows("Image/GrayEnc", grayFilter,
         {{"0", " -dAutoFilterGrayImages=true"},
          {"1", " -dAutoFilterGrayImages=false -dGrayImageFilter=/DCTEncode"},
          {"2", " -dAutoFilterGrayImages=false -dGrayImageFilter=/FlateEncode"},
          {"JPEG", " -dAutoFilterGrayImages=false -dGrayImageFilter=/DCTEncode"}});
    rows("Image/MonoEnc", monoFilter,
         {{"0", " -dAutoFilterMonoImages=true"},
          {"1", " -dAutoFilterMonoImages=false -dMonoImageFilter=/FlateEncode"},
          {"2", " -dAutoFilterMonoImages=false -dMonoImageFilter=/RunLengthEncode"},
          {"3", " -dAutoFilterMonoImages=false -dMonoImageFilter=/JBIG2Encode"},
          {"4", " -dAutoFilterMonoImages=false -dMonoImageFilter=/CCITTFaxEncode"},
          {"7", " -dAutoFilterMonoImages=false -dMonoImageFilter=/CCITTFaxEncode"}});
}

void TestEngineSwitches::imagePiece()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QString, before);
    QFETCH(QString, after);
    const QString standard = core::imageSwitches(defaults());
    QCOMPARE(standard.count(before), 1);
    QCOMPARE(core::imageSwitches(with(key, value)), QString(standard).replace(before, after));
}

void TestEngineSwitches::resolutions_data()
{
    QTest::addColumn<QStringList>("stored"); // colour, gray, mono
    QTest::addColumn<QStringList>("sent");

    const auto row = [](const char *name, const QStringList &stored, const QStringList &sent) {
        QTest::newRow(name) << stored << sent;
    };
    row("numbers", {u"72"_s, u"96"_s, u"600"_s}, {u"72"_s, u"96"_s, u"600"_s});
    row("colour empty, mono 200: mono falls back", {u""_s, u"96"_s, u"200"_s},
        {u"150"_s, u"96"_s, u"300"_s});
    row("colour 96, mono empty: mono is empty", {u"96"_s, u"96"_s, u""_s},
        {u"96"_s, u"96"_s, u""_s});
    row("blanks count as empty", {u"  "_s, u" "_s, u"  "_s}, {u"150"_s, u"150"_s, u"300"_s});
    row("a tabulator does not", {u"\t"_s, u"\t"_s, u""_s}, {u"\t"_s, u"\t"_s, u""_s});
    row("blanks are kept", {u"1 2 0"_s, u" 120 "_s, u"3 00"_s},
        {u"1 2 0"_s, u" 120 "_s, u"3 00"_s});
    row("anything goes", {u"abc"_s, u"-1"_s, u"1e3"_s}, {u"abc"_s, u"-1"_s, u"1e3"_s});
}

void TestEngineSwitches::resolutions()
{
    QFETCH(QStringList, stored);
    QFETCH(QStringList, sent);
    core::Values values = defaults();
    values.insert(u"Image/ColorRes"_s, stored[0]);
    values.insert(u"Image/GrayRes"_s, stored[1]);
    values.insert(u"Image/MonoRes"_s, stored[2]);
    QCOMPARE(core::imageSwitches(values),
             colourType + " -dColorImageResolution="_L1 + sent[0] + colourFilter + grayType +
                 " -dGrayImageResolution="_L1 + sent[1] + grayFilter + monoType +
                 " -dMonoImageResolution="_L1 + sent[2] + monoFilter);
    // The pieces that the rows above replace.
    QCOMPARE(core::imageSwitches(defaults()),
             QString(colourType + colourRes + colourFilter + grayType + grayRes + grayFilter +
                     monoType + monoRes + monoFilter));
}

void TestEngineSwitches::fonts_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");

    QTest::newRow("not embedded")
        << u"Fonts/Embed"_s << u"No"_s
        << u" -dEmbedAllFonts=false -dCompressFonts=true -dSubsetFonts=true"_s;
    QTest::newRow("not compressed")
        << u"Fonts/Com"_s << u"No"_s
        << u" -dEmbedAllFonts=true -dCompressFonts=false -dSubsetFonts=true"_s;
    QTest::newRow("not subset")
        << u"Fonts/Sub"_s << u"No"_s
        << u" -dEmbedAllFonts=true -dCompressFonts=true -dSubsetFonts=false"_s;
    for (const QString &odd : {u"no"_s, u""_s, u" No"_s, u"ok"_s, u"0"_s}) {
        QTest::addRow("\"%s\" is on", qPrintable(odd))
            << u"Fonts/Embed"_s << odd
            << u" -dEmbedAllFonts=true -dCompressFonts=true -dSubsetFonts=true"_s;
    }
    QTest::newRow("page off") << u"Fonts/Fonts"_s << u"No"_s << QString();
}

void TestEngineSwitches::fonts()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QTEST(core::fontSwitches(with(key, value)), "expected");
}

void TestEngineSwitches::passwords_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("owner");
    QTest::addColumn<QString>("expected");

    QTest::newRow("none") << u""_s << u""_s << u" -dPermissions=-4"_s;
    QTest::newRow("blanks only") << u" "_s << u"   "_s << u" -dPermissions=-4"_s;
    QTest::newRow("user") << u"u"_s << u""_s << u" -sUserPassword=u -dPermissions=-4"_s;
    QTest::newRow("owner") << u""_s << u"o"_s << u" -sOwnerPassword=o -dPermissions=-4"_s;
    QTest::newRow("both") << u"u"_s << u"o"_s
                          << u" -sUserPassword=u -sOwnerPassword=o -dPermissions=-4"_s;
    QTest::newRow("as they stand")
        << u" a b\"c "_s << u"$(x);'ö'"_s
        << u" -sUserPassword= a b\"c  -sOwnerPassword=$(x);'ö' -dPermissions=-4"_s;
}

void TestEngineSwitches::passwords()
{
    QFETCH(QString, user);
    QFETCH(QString, owner);
    core::Values values = with(u"Secur/UsrPwd"_s, user);
    values.insert(u"Secur/OwrPwd"_s, owner);
    QTEST(core::securitySwitches(values), "expected");
}

void TestEngineSwitches::permissions_data()
{
    QTest::addColumn<bool>("print");
    QTest::addColumn<bool>("assemble");
    QTest::addColumn<bool>("copy");
    QTest::addColumn<bool>("comment");
    QTest::addColumn<QString>("expected");

    // All sixteen, written out.
    const auto row = [](bool print, bool assemble, bool copy, bool comment, const char *expected) {
        QTest::newRow(expected) << print << assemble << copy << comment
                                << QString::fromLatin1(expected);
    };
    row(true, true, true, true, " -dPermissions=-4");
    row(false, true, true, true, " -dPermissions=-8");
    row(true, false, true, true, " -dPermissions=-12");
    row(false, false, true, true, " -dPermissions=-16");
    row(true, true, false, true, " -dPermissions=-20");
    row(false, true, false, true, " -dPermissions=-24");
    row(true, false, false, true, " -dPermissions=-28");
    row(false, false, false, true, " -dPermissions=-32");
    row(true, true, true, false, " -dPermissions=-36");
    row(false, true, true, false, " -dPermissions=-40");
    row(true, false, true, false, " -dPermissions=-44");
    row(false, false, true, false, " -dPermissions=-48");
    row(true, true, false, false, " -dPermissions=-52");
    row(false, true, false, false, " -dPermissions=-56");
    row(true, false, false, false, " -dPermissions=-60");
    row(false, false, false, false, " -dPermissions=-64");
}

void TestEngineSwitches::permissions()
{
    QFETCH(bool, print);
    QFETCH(bool, assemble);
    QFETCH(bool, copy);
    QFETCH(bool, comment);
    const auto flag = [](bool on) { return on ? u"Ok"_s : u"No"_s; };
    core::Values values = defaults();
    values.insert(u"Secur/AllowPri"_s, flag(print));
    values.insert(u"Secur/AllowMod"_s, flag(assemble));
    values.insert(u"Secur/AllowCop"_s, flag(copy));
    values.insert(u"Secur/AllowAdd"_s, flag(comment));
    QTEST(core::securitySwitches(values), "expected");
}

void TestEngineSwitches::pdfa_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("pdfa");
    QTest::addColumn<QString>("expected");

    QTest::newRow("off") << u"Ok"_s << u"No"_s << QString();
    QTest::newRow("on") << u"Ok"_s << u"Ok"_s << u" -dPDFA"_s;
    QTest::newRow("page off") << u"No"_s << u"Ok"_s << QString();
    QTest::newRow("odd page value is on") << u"no"_s << u"Ok"_s << u" -dPDFA"_s;
    QTest::newRow("odd value is off") << u"Ok"_s << u"ok"_s << QString();
    QTest::newRow("empty is off") << u"Ok"_s << u""_s << QString();
}

void TestEngineSwitches::pdfa()
{
    QFETCH(QString, page);
    QFETCH(QString, pdfa);
    core::Values values = with(u"Annot/Annot"_s, page);
    values.insert(u"Annot/PDFA"_s, pdfa);
    QTEST(core::pdfaSwitches(values), "expected");
}

void TestEngineSwitches::pagesSwitchedOff()
{
    QCOMPARE(core::imageSwitches(with(u"Image/Image"_s, u"No"_s)), QString());
    QCOMPARE(core::securitySwitches(with(u"Secur/Secur"_s, u"No"_s)), QString());
    // Each page's switch is its own.
    QCOMPARE(core::imageSwitches(with(u"Secur/Secur"_s, u"No"_s)), core::imageSwitches(defaults()));
    QCOMPARE(core::securitySwitches(with(u"Image/Image"_s, u"No"_s)),
             core::securitySwitches(defaults()));
}

void TestEngineSwitches::onlyNoSwitchesAPageOff_data()
{
    QTest::addColumn<QString>("value");
    for (const QString &value : {u"no"_s, u"NO"_s, u""_s, u"No "_s, u"false"_s, u"0"_s})
        QTest::addRow("\"%s\"", qPrintable(value)) << value;
}

void TestEngineSwitches::onlyNoSwitchesAPageOff()
{
    QFETCH(QString, value);
    QCOMPARE(core::imageSwitches(with(u"Image/Image"_s, value)), core::imageSwitches(defaults()));
    QCOMPARE(core::securitySwitches(with(u"Secur/Secur"_s, value)),
             core::securitySwitches(defaults()));
    QCOMPARE(core::securitySwitches(with(u"Secur/AllowPri"_s, value)),
             core::securitySwitches(defaults()));
}

QTEST_GUILESS_MAIN(TestEngineSwitches)
#include "tst_engineswitches.moc"
