// What becomes of an option on its way from a control through the settings file to the engine's
// command line, and back into a dialog constructed anew.

#include "core/engineswitches.h"
#include "core/markfile.h"
#include "src/process.h"
#include "support/bound.h"
#include "support/fakeengine.h"
#include "support/options.h"
#include "support/optionswindow.h"
#include "support/sandbox.h"
#include "support/windowuser.h"

#include <QLineEdit>
#include <QRandomGenerator>
#include <QTest>

#include <memory>

namespace {

using Values = QMap<QString, QString>;

Values allShown(Process &program)
{
    Values values;
    withOptions(program, [&](const OptionsWindow &window) {
        for (const Option &option : allOptions())
            values.insert(option.control, window.value(option.control));
        window.press("pushButton_cancel");
    });
    return values;
}

// The switches that the values are to become.
QString switchesFor(const Values &values)
{
    core::Values byKey = {{"Annot/PDFA", "No"}};
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        byKey.insert(keyOf(value.key()), value.value());
    return core::baseSwitches() + core::imageSwitches(byKey) + core::fontSwitches(byKey) +
           core::securitySwitches(byKey) + core::pdfaSwitches(byKey);
}

// One choice of each control; texts of letters that files and switches could trip over.
class RandomValues
{
public:
    explicit RandomValues(quint32 seed)
        : m_random(seed)
    {
    }

    Values draw()
    {
        Values values;
        for (const Option &option : allOptions())
            values.insert(option.control, drawFor(option));
        // A password keeps PDF/A from being clicked.
        if (!values["lineEdit_userpassword"].isEmpty() ||
            !values["lineEdit_ownerpassword"].isEmpty())
            values.remove("checkBox_pdfa");
        return values;
    }

private:
    QString drawFor(const Option &option)
    {
        if (option.isFlag())
            return m_random.bounded(2) ? "Ok" : "No";
        if (option.lastItem >= 0)
            return QString::number(m_random.bounded(option.lastItem + 1));
        if (option.kind == Option::resolution)
            return QString::number(m_random.bounded(1, 2400));
        return text();
    }

    QString text()
    {
        static const std::u32string letters = U"ab %1 (\\)\"';=,[]/@<>#~äé報告🔒";
        std::u32string drawn;
        for (int length = m_random.bounded(8); length > 0; --length)
            drawn += letters[m_random.bounded(quint32(letters.size()))];
        return QString::fromStdU32String(drawn);
    }

    QRandomGenerator m_random;
};

} // namespace

class TestOptionsTrip : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstRunDialogAndEngineDiffer();
    void textIndexReadsDifferently();
    void everyControl_data();
    void everyControl();
    void everyDescriptionField_data();
    void everyDescriptionField();
    void randomStates_data();
    void randomStates();
    void cancelledEditsAreShownAgain();
    void markArgumentComesWithTheFirstApply();
    void applyDuringARunCountsFromTheNextFile();

private:
    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<FakeEngine> m_engine;
};

void TestOptionsTrip::init()
{
    m_sandbox = std::make_unique<Sandbox>();
    m_engine = std::make_unique<FakeEngine>();
}

void TestOptionsTrip::cleanup()
{
    m_engine.reset();
    m_sandbox.reset();
}

void TestOptionsTrip::firstRunDialogAndEngineDiffer()
{
    Process program;
    QVERIFY(program.getOption().contains("-dMonoImageFilter=/FlateEncode"));
    QCOMPARE(allShown(program).value("comboBox_mno_compress"), QString("4"));
    const QString before = program.getOption();
    applyOptions(program, {});
    QCOMPARE(program.getOption(), QString(before).replace("-dMonoImageFilter=/FlateEncode",
                                                          "-dMonoImageFilter=/CCITTFaxEncode"));
}

// The dialog takes what is no number for the first item, the engine for the last one.
void TestOptionsTrip::textIndexReadsDifferently()
{
    m_sandbox->store("Image/ColorType", "Subsample");
    Process program;
    QCOMPARE(allShown(program).value("comboBox_clr_down_type"), QString("0"));
    QVERIFY(program.getOption().contains("-dColorImageDownsampleType=/Bicubic"));
}

// What each value of each control makes of the switches that an applied default dialog gives: the
// text "before" becomes "after".
void TestOptionsTrip::everyControl_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");

    const auto row = [](const QString &control, const QString &value, const QString &before,
                        const QString &after) {
        QTest::addRow("%s=%s", qPrintable(control), qPrintable(value))
            << control << value << before << after;
    };
    const QStringList typeNames = {"", "/Subsample", "/Average", "/Bicubic"};
    for (int type = 0; type < 4; ++type) {
        for (const auto &[control, kind] :
             {std::pair("comboBox_clr_down_type", "Color"), {"comboBox__mno_down_type", "Mono"}}) {
            const QString on = QString(" -dDownsample%1Images=true -d%1ImageDownsampleType=");
            const QString off = QString(" -dDownsample%1Images=false");
            row(control, QString::number(type), (on + "/Bicubic").arg(kind),
                (type == 0 ? off : on + typeNames[type]).arg(kind));
        }
        row("comboBox_gry_down_type", QString::number(type), " -dGrayImageDownsampleType=/Bicubic",
            type == 0 ? " -dDownsampleGrayImages=false"
                      : " -dGrayImageDownsampleType=" + typeNames[type]);
    }
    for (const auto &[control, kind] :
         {std::pair("comboBox_clr_compress", "Color"), {"comboBox_gry_compress", "Gray"}}) {
        const QString filter = " -dAutoFilter%1Images=false -d%1ImageFilter=";
        const QString jpeg = (filter + "/DCTEncode").arg(kind);
        row(control, "0", jpeg, QString(" -dAutoFilter%1Images=true").arg(kind));
        row(control, "1", jpeg, jpeg);
        row(control, "2", jpeg, (filter + "/FlateEncode").arg(kind));
    }
    const QString monoFilter = " -dAutoFilterMonoImages=false -dMonoImageFilter=";
    const QString group4 = monoFilter + "/CCITTFaxEncode";
    row("comboBox_mno_compress", "0", group4, " -dAutoFilterMonoImages=true");
    row("comboBox_mno_compress", "1", group4, monoFilter + "/FlateEncode");
    row("comboBox_mno_compress", "2", group4, monoFilter + "/RunLengthEncode");
    row("comboBox_mno_compress", "3", group4, monoFilter + "/JBIG2Encode");
    row("comboBox_mno_compress", "4", group4, group4);

    row("lineEdit_clr_res", "72", " -dColorImageResolution=150", " -dColorImageResolution=72");
    row("lineEdit__gry_res", "73", " -dGrayImageResolution=150", " -dGrayImageResolution=73");
    row("lineEdit_mno_res", "74", " -dMonoImageResolution=300", " -dMonoImageResolution=74");

    row("checkBox_embedallfonts", "No", "-dEmbedAllFonts=true", "-dEmbedAllFonts=false");
    row("checkBox_compressfonts", "No", "-dCompressFonts=true", "-dCompressFonts=false");
    row("checkBox_subset", "No", "-dSubsetFonts=true", "-dSubsetFonts=false");
    for (const char *box : {"checkBox_embedallfonts", "checkBox_compressfonts", "checkBox_subset"})
        row(box, "Ok", "=true", "=true");

    row("lineEdit_userpassword", "u s", " -dPermissions", " -sUserPassword=u s -dPermissions");
    row("lineEdit_ownerpassword", "o\"", " -dPermissions", " -sOwnerPassword=o\" -dPermissions");
    row("lineEdit_userpassword", "  ", " -dPermissions", " -dPermissions");
    row("checkBox_allow_print", "No", " -dPermissions=-4", " -dPermissions=-8");
    row("checkBox_allow_modcontents", "No", " -dPermissions=-4", " -dPermissions=-12");
    row("checkBox_allow_copy", "No", " -dPermissions=-4", " -dPermissions=-20");
    row("checkBox_allow_add", "No", " -dPermissions=-4", " -dPermissions=-36");

    row("checkBox_pdfa", "Ok", " -dPermissions=-4", " -dPermissions=-4 -dPDFA");
    row("checkBox_pdfa", "No", " -dPermissions=-4", " -dPermissions=-4");

    row("Image", "No",
        " -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic"
        " -dColorImageResolution=150 -dAutoFilterColorImages=false"
        " -dColorImageFilter=/DCTEncode -dGrayImageDownsampleType=/Bicubic"
        " -dGrayImageResolution=150 -dAutoFilterGrayImages=false"
        " -dGrayImageFilter=/DCTEncode -dDownsampleMonoImages=true"
        " -dMonoImageDownsampleType=/Bicubic -dMonoImageResolution=300"
        " -dAutoFilterMonoImages=false -dMonoImageFilter=/CCITTFaxEncode",
        "");
    row("Fonts", "No", " -dEmbedAllFonts=true -dCompressFonts=true -dSubsetFonts=true", "");
    row("Security", "No", " -dPermissions=-4", "");
    row("Description", "No", " -dPermissions=-4", " -dPermissions=-4");
}

void TestOptionsTrip::everyControl()
{
    QFETCH(QString, control);
    QFETCH(QString, value);
    QFETCH(QString, before);
    QFETCH(QString, after);
    Process program;
    applyOptions(program, {});
    const QString switches = program.getOption();
    QVERIFY(switches.contains(before));

    applyOptions(program, {{control, value}});
    QCOMPARE(m_sandbox->stored(keyOf(control)), value);
    QCOMPARE(program.getOption(), QString(switches).replace(before, after));

    Process later;
    QCOMPARE(allShown(later).value(control), value);
}

void TestOptionsTrip::everyDescriptionField_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("lineEdit_title") << QByteArray("/Title (x y)\n");
    QTest::newRow("lineEdit_author") << QByteArray("/Author (x y) \n");
    QTest::newRow("lineEdit_subject") << QByteArray("/Subject (x y) \n");
    QTest::newRow("lineEdit_keywords") << QByteArray("/Keywords (x y) \n");
    QTest::newRow("lineEdit_creator") << QByteArray("/Creator (x y) \n");
    QTest::newRow("lineEdit_producer") << QByteArray("/Producer (x y) \n");
}

void TestOptionsTrip::everyDescriptionField()
{
    const QString control = QTest::currentDataTag();
    Process program;
    applyOptions(program, {});
    const QString switches = program.getOption();
    applyOptions(program, {{control, "x y"}});
    QCOMPARE(m_sandbox->stored(keyOf(control)), QString("x y"));
    QCOMPARE(program.getOption(), switches);
    QFETCH(QByteArray, line);
    QVERIFY(contentOf(m_sandbox->markFile()).contains(line));
    Process later;
    QCOMPARE(allShown(later).value(control), QString("x y"));
}

void TestOptionsTrip::randomStates_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 25; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

// The types come after the resolutions, which they may hide, and the pages' switches last.
void TestOptionsTrip::randomStates()
{
    QFETCH(quint32, seed);
    RandomValues random(seed);
    const Values values = random.draw();
    Process program;
    withOptions(program, [&](const OptionsWindow &window) {
        const auto setAll = [&](const auto &isInTurn) {
            for (const Option &option : allOptions()) {
                if (isInTurn(option.kind) && values.contains(option.control))
                    window.set(option.control, values.value(option.control));
            }
        };
        setAll([](Option::Kind kind) { return kind != Option::type && kind != Option::page; });
        setAll([](Option::Kind kind) { return kind == Option::type; });
        setAll([](Option::Kind kind) { return kind == Option::page; });
        window.press("pushButton_apply");
    });

    for (auto value = values.cbegin(); value != values.cend(); ++value)
        QCOMPARE(m_sandbox->stored(keyOf(value.key())), value.value());
    QCOMPARE(program.getOption(), switchesFor(values));
    const auto text = [&values](const char *field) {
        return values.value(QString("lineEdit_") + field);
    };
    const core::Description typed = {text("title"),    text("author"),  text("subject"),
                                     text("keywords"), text("creator"), text("producer")};
    const QString mark =
        values.value("Description") == "Ok" ? core::markText(typed) : core::blankMarkText();
    QCOMPARE(QString::fromUtf8(contentOf(m_sandbox->markFile())), mark);

    Process later;
    Values after = allShown(later);
    if (!values.contains("checkBox_pdfa"))
        after.remove("checkBox_pdfa");
    QCOMPARE(after, values);
}

// The dialog reads the file once, when the program starts.
void TestOptionsTrip::cancelledEditsAreShownAgain()
{
    Process program;
    withOptions(program, [](const OptionsWindow &window) {
        window.type("lineEdit_clr_res", "72");
        window.press("pushButton_cancel");
    });
    QCOMPARE(allShown(program).value("lineEdit_clr_res"), QString("72"));
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
    withOptions(program, [](const OptionsWindow &window) {
        window.press("pushButton_reset");
        window.press("pushButton_cancel");
    });
    QCOMPARE(allShown(program).value("lineEdit_clr_res"), QString("150"));
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
}

void TestOptionsTrip::markArgumentComesWithTheFirstApply()
{
    Process program;
    QCOMPARE(program.getAnnooption(), QString());
    applyOptions(program, {{"Description", "No"}});
    QCOMPARE(program.getAnnooption(), " \"" + m_sandbox->markFile() + '"');
    QCOMPARE(contentOf(m_sandbox->markFile()),
             QByteArray(" [ /Creator ( ) \n /Producer ( ) \n /DOCINFO pdfmark"));
    applyOptions(program, {{"Description", "Ok"}, {"lineEdit_title", "T"}});
    QCOMPARE(program.getAnnooption(), " \"" + m_sandbox->markFile() + '"');
    QVERIFY(contentOf(m_sandbox->markFile()).startsWith("[ /Title (T)\n"));
}

// The first file is still at work when the options are applied.
void TestOptionsTrip::applyDuringARunCountsFromTheNextFile()
{
    m_engine->behave({.gate = true}, "a");
    QStringList inputs;
    for (const char *name : {"a.pdf", "b.pdf", "c.pdf"})
        inputs.append(m_sandbox->addInput(name));
    Process program;
    const WindowUser user(program);
    user.drop(inputs);
    user.folderEdit()->setText(m_sandbox->outputFolder());
    user.run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);

    applyOptions(program, {{"lineEdit_clr_res", "72"}, {"lineEdit_title", "T"}});
    QCOMPARE(m_engine->startCount(), 1);
    m_engine->open();
    user.awaitEnd();

    QCOMPARE(m_engine->inputs(), QStringList({"a", "b", "c"}));
    const QList<QStringList> starts = m_engine->starts();
    QVERIFY(starts[0].contains("-dColorImageResolution=150"));
    QVERIFY(starts[1].contains("-dColorImageResolution=72"));
    QVERIFY(starts[2].contains("-dColorImageResolution=72"));
    QVERIFY(!starts[0].contains(m_sandbox->markFile()));
    QCOMPARE(starts[1].constLast(), m_sandbox->markFile());
    QCOMPARE(starts[2].constLast(), m_sandbox->markFile());
}

QTEST_MAIN(TestOptionsTrip)
#include "tst_optionstrip.moc"
