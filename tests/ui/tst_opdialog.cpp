#include "core/settings.h"
#include "src/opdialog.h"
#include "support/optionswindow.h"
#include "support/sandbox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMetaMethod>
#include <QPushButton>
#include <QSettings>
#include <QStackedWidget>
#include <QTest>

#include <memory>

namespace {

// A dialog as it is constructed from the settings file, on the screen.
struct Shown
{
    OpDialog dialog;
    OptionsWindow window{dialog};
};

struct KeyAndControl
{
    const char *key;
    const char *control;
};

// In the order of writing.
constexpr KeyAndControl allOptions[] = {
    {"Image/Image", "Image"},
    {"Image/ColorType", "comboBox_clr_down_type"},
    {"Image/ColorRes", "lineEdit_clr_res"},
    {"Image/ColorEnc", "comboBox_clr_compress"},
    {"Image/GrayType", "comboBox_gry_down_type"},
    {"Image/GrayRes", "lineEdit__gry_res"},
    {"Image/GrayEnc", "comboBox_gry_compress"},
    {"Image/MonoType", "comboBox__mno_down_type"},
    {"Image/MonoRes", "lineEdit_mno_res"},
    {"Image/MonoEnc", "comboBox_mno_compress"},
    {"Fonts/Fonts", "Fonts"},
    {"Fonts/Embed", "checkBox_embedallfonts"},
    {"Fonts/Com", "checkBox_compressfonts"},
    {"Fonts/Sub", "checkBox_subset"},
    {"Secur/Secur", "Security"},
    {"Secur/UsrPwd", "lineEdit_userpassword"},
    {"Secur/OwrPwd", "lineEdit_ownerpassword"},
    {"Secur/AllowPri", "checkBox_allow_print"},
    {"Secur/AllowMod", "checkBox_allow_modcontents"},
    {"Secur/AllowCop", "checkBox_allow_copy"},
    {"Secur/AllowAdd", "checkBox_allow_add"},
    {"Annot/Annot", "Description"},
    {"Annot/PDFA", "checkBox_pdfa"},
    {"Annot/Aut", "lineEdit_author"},
    {"Annot/Tit", "lineEdit_title"},
    {"Annot/Sub", "lineEdit_subject"},
    {"Annot/Key", "lineEdit_keywords"},
    {"Annot/Cre", "lineEdit_creator"},
    {"Annot/Pro", "lineEdit_producer"},
};

// The three widgets that "Closed" hides.
const QMap<QString, QStringList> trios = {
    {"comboBox_clr_down_type", {"label_CLR_DSR", "label_PPI1", "lineEdit_clr_res"}},
    {"comboBox_gry_down_type", {"label_GRY_DSR", "label_PPI2", "lineEdit__gry_res"}},
    {"comboBox__mno_down_type", {"label_MNO_DSR", "label_PPI3", "lineEdit_mno_res"}},
};

// Looks whether there is a file when a window is hidden.
class HideWatch : public QObject
{
public:
    enum class File { notYetHidden, absent, present };

    explicit HideWatch(const QString &path)
        : m_path(path)
    {
    }

    File fileOnHiding = File::notYetHidden;

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Hide)
            fileOnHiding = QFile::exists(m_path) ? File::present : File::absent;
        return false;
    }

private:
    QString m_path;
};

} // namespace

class TestOpDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void slotsInOrder();
    void pageItems();
    void opensOnTheImagePage();
    void background();
    void textsAreDarkOnADarkDesktop();
    void fixedSize();

    void withoutSettingsFile_data();
    void withoutSettingsFile();
    void withoutSettingsFileNothingIsHiddenButTheWarning();
    void loads_data();
    void loads();
    void closedTypeHidesItsResolution_data();
    void closedTypeHidesItsResolution();
    void unknownTypeHidesNothing();
    void storedPasswords_data();
    void storedPasswords();
    void disabledPdfaKeepsItsState();
    void pageLoadedAsOffStaysEnabledUntilAnItemChanges();
    void readsTheFileOnce();
    void loadingAgainHidesAndShows();

    void applyWritesEveryKey();
    void applyClosesFirst();
    void applyKeepsTheFolders();
    void applyWritesDisabledPages();
    void applyWritesTheTextAsTyped();
    void halfCheckedPagesAreOff();
    void cancelWritesNothingAndRevertsNothing();
    void closingWritesNothing();
    void editingCancelledShowsAgainAndIsSavedLater();

    void resetValues_data();
    void resetValues();
    void resetSwitchesThePages();
    void resetSwitchesPagesThatWereLoadedAsOff();
    void resetShowsTheResolutions();
    void resetAllowsPdfa();
    void resetAndCancelLeaveTheFile();

    void markFile_data();
    void markFile();
    void markFileOfAPageThatIsOff();
    void markFileThatCannotBeWritten();

private:
    std::unique_ptr<Sandbox> m_sandbox;
};

void TestOpDialog::init()
{
    m_sandbox = std::make_unique<Sandbox>();
}

void TestOpDialog::cleanup()
{
    m_sandbox.reset();
}

void TestOpDialog::slotsInOrder()
{
    const QMetaObject &meta = OpDialog::staticMetaObject;
    QStringList slotList;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        QCOMPARE(method.returnType(), int(QMetaType::Void));
        slotList.append(method.methodSignature());
    }
    const QStringList expected = {"setop()",
                                  "InitialTablewidget()",
                                  "setallowshow()",
                                  "setstackenable()",
                                  "changeStackedDisplay()",
                                  "setGeneralSetting()",
                                  "linkCustomSetting()",
                                  "allCustomConnection()",
                                  "allCustomDisconnection()",
                                  "closeClrDSres()",
                                  "closeGryDSres()",
                                  "closeMnoDSres()",
                                  "writeAnnot()",
                                  "setwarning()"};
    QCOMPARE(slotList, expected);
}

void TestOpDialog::pageItems()
{
    const Shown shown;
    const auto *list = shown.window.find<QListWidget>("listWidge_option");
    QStringList texts;
    for (int row = 0; row < list->count(); ++row) {
        const QListWidgetItem *item = list->item(row);
        texts.append(item->text());
        QCOMPARE(item->flags(), QListWidgetItem().flags() | Qt::ItemIsUserCheckable);
        QCOMPARE(item->checkState(), Qt::Checked);
        QVERIFY(item->icon().isNull());
    }
    QCOMPARE(texts, QStringList({"Image", "Fonts", "Security", "Description"}));
}

void TestOpDialog::opensOnTheImagePage()
{
    const Shown shown;
    QCOMPARE(shown.window.find<QListWidget>("listWidge_option")->currentRow(), 0);
    QCOMPARE(shown.window.find<QStackedWidget>("stackedWidget_option")->currentIndex(), 0);
}

void TestOpDialog::background()
{
    const Shown shown;
    QVERIFY(shown.dialog.autoFillBackground());
    const QImage expected = QPixmap(":/iconoption/icons/graybackgr.png")
                                .scaled(588, 393, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                                .toImage();
    QCOMPARE(shown.dialog.palette().brush(QPalette::Window).texture().toImage(), expected);
}

// The picture is light on every desktop.
void TestOpDialog::textsAreDarkOnADarkDesktop()
{
    const QPalette former = QApplication::palette();
    QApplication::setPalette(QPalette(Qt::white, Qt::black, Qt::gray, Qt::black, Qt::darkGray,
                                      Qt::white, Qt::white, Qt::black, Qt::black));
    {
        const Shown shown;
        for (const QWidget *widget : shown.dialog.findChildren<QWidget *>()) {
            const QPalette &palette = widget->palette();
            for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
                QVERIFY2(palette.color(QPalette::Active, role).lightness() < 64,
                         qPrintable(widget->objectName()));
            QVERIFY(palette.color(QPalette::Base).lightness() > 192);
        }
    }
    QApplication::setPalette(former);
}

void TestOpDialog::fixedSize()
{
    Shown shown;
    shown.dialog.resize(800, 600);
    QCOMPARE(shown.dialog.size(), QSize(588, 393));
    QCOMPARE(shown.dialog.minimumSize(), QSize(588, 393));
    QCOMPARE(shown.dialog.maximumSize(), QSize(588, 393));
}

// Loading

void TestOpDialog::withoutSettingsFile_data()
{
    QTest::addColumn<QString>("expected");

    for (const auto &[key, control] : allOptions) {
        const bool isType = trios.contains(control);
        const QString name = control;
        QString expected;
        if (isType)
            expected = "3";
        else if (name == "comboBox_mno_compress")
            expected = "4";
        else if (name.startsWith("comboBox"))
            expected = "1";
        else if (name == "lineEdit_mno_res")
            expected = "300";
        else if (name.endsWith("_res"))
            expected = "150";
        else if (name == "checkBox_pdfa")
            expected = "No";
        else if (!name.startsWith("lineEdit"))
            expected = "Ok";
        QTest::newRow(control) << expected;
    }
}

void TestOpDialog::withoutSettingsFile()
{
    const Shown shown;
    QTEST(shown.window.value(QTest::currentDataTag()), "expected");
}

void TestOpDialog::withoutSettingsFileNothingIsHiddenButTheWarning()
{
    const Shown shown;
    for (const QStringList &trio : trios) {
        for (const QString &name : trio)
            QVERIFY2(shown.window.isShown(name), qPrintable(name));
    }
    QVERIFY(!shown.window.isShown("groupBox_warningPDFA"));
    QVERIFY(shown.window.find<QCheckBox>("checkBox_pdfa")->isEnabled());
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
    QVERIFY(!QFile::exists(m_sandbox->markFile()));
}

void TestOpDialog::loads_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("expected");

    for (const auto &[key, control] : allOptions) {
        const auto row = [key = key, control = control](const char *stored, const char *expected) {
            QTest::addRow("%s \"%s\"", key, stored) << key << control << stored << expected;
        };
        const QString name = control;
        if (name.startsWith("comboBox")) {
            const bool isType = trios.contains(name);
            const int last = name == "comboBox_mno_compress" ? 4 : isType ? 3 : 2;
            const QByteArray fallback = name == "comboBox_mno_compress" ? "4" : isType ? "3" : "1";
            for (int index = 0; index <= last; ++index)
                row(QByteArray::number(index), QByteArray::number(index));
            row(QByteArray::number(last + 1), fallback);
            row("7", fallback);
            row("-1", fallback);
            // What is no number reads as 0.
            row("Bicubic", "0");
            row("", "0");
        } else if (name.endsWith("_res")) {
            const char *fallback = name == "lineEdit_mno_res" ? "300" : "150";
            row("72", "72");
            row("", fallback);
            row("   ", fallback);
            row("1 2 0", "120");
            row(" 96 ", "96");
            row("abc", "abc");
            row("\t", "\t");
            row("-1", "-1");
        } else if (name.startsWith("lineEdit")) {
            row("", "");
            row(" a  b ", " a  b ");
            row("(\\\"%1;,=", "(\\\"%1;,=");
            row("Zoë 報告書", "Zoë 報告書");
        } else {
            const char *byDefault = name == "checkBox_pdfa" ? "No" : "Ok";
            row("Ok", "Ok");
            row("No", "No");
            for (const char *other : {"ok", "no", "NO", "", " No", "Ok ", "0", "true"})
                row(other, byDefault);
        }
    }
}

void TestOpDialog::loads()
{
    QFETCH(QString, key);
    QFETCH(QString, control);
    QFETCH(QString, stored);
    m_sandbox->store(key, stored);
    const Shown shown;
    QTEST(shown.window.value(control), "expected");
}

void TestOpDialog::closedTypeHidesItsResolution_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("comboBox_clr_down_type") << "Image/ColorType";
    QTest::newRow("comboBox_gry_down_type") << "Image/GrayType";
    QTest::newRow("comboBox__mno_down_type") << "Image/MonoType";
}

void TestOpDialog::closedTypeHidesItsResolution()
{
    QFETCH(QString, key);
    m_sandbox->store(key, "0");
    const Shown shown;
    for (auto trio = trios.cbegin(); trio != trios.cend(); ++trio) {
        const bool closed = trio.key() == QTest::currentDataTag();
        for (const QString &name : trio.value())
            QVERIFY2(shown.window.isShown(name) == !closed, qPrintable(name));
    }
}

void TestOpDialog::unknownTypeHidesNothing()
{
    m_sandbox->store("Image/ColorType", "7");
    const Shown shown;
    for (const QString &name : trios.value("comboBox_clr_down_type"))
        QVERIFY2(shown.window.isShown(name), qPrintable(name));
}

void TestOpDialog::storedPasswords_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("owner");
    QTest::addColumn<bool>("warns");

    QTest::newRow("none") << ""
                          << "" << false;
    QTest::newRow("user") << "u"
                          << "" << true;
    QTest::newRow("owner") << ""
                           << "o" << true;
    QTest::newRow("both") << "u"
                          << "o" << true;
    QTest::newRow("a blank") << " "
                             << "" << true;
}

void TestOpDialog::storedPasswords()
{
    QFETCH(QString, user);
    QFETCH(QString, owner);
    m_sandbox->store("Secur/UsrPwd", user);
    m_sandbox->store("Secur/OwrPwd", owner);
    for (const char *page : {"Ok", "No"}) { // a page that is off keeps its passwords
        m_sandbox->store("Secur/Secur", page);
        const Shown shown;
        QTEST(shown.window.isShown("groupBox_warningPDFA"), "warns");
        QTEST(!shown.window.find<QCheckBox>("checkBox_pdfa")->isEnabled(), "warns");
    }
}

void TestOpDialog::disabledPdfaKeepsItsState()
{
    m_sandbox->store("Secur/OwrPwd", "o");
    m_sandbox->store("Annot/PDFA", "Ok");
    const Shown shown;
    const auto *pdfa = shown.window.find<QCheckBox>("checkBox_pdfa");
    QVERIFY(!pdfa->isEnabled());
    QVERIFY(pdfa->isChecked());
    QVERIFY(shown.window.isShown("groupBox_warningPDFA"));
    m_sandbox->store("Annot/PDFA", "(overwritten)");
    shown.window.press("pushButton_apply");
    QCOMPARE(m_sandbox->stored("Annot/PDFA"), QString("Ok"));
}

void TestOpDialog::pageLoadedAsOffStaysEnabledUntilAnItemChanges()
{
    for (const char *key : {"Image/Image", "Fonts/Fonts", "Secur/Secur", "Annot/Annot"})
        m_sandbox->store(key, "No");
    const Shown shown;
    const auto *pages = shown.window.find<QStackedWidget>("stackedWidget_option");
    for (int page = 0; page < 4; ++page) {
        QVERIFY(!shown.window.isPageOn(page));
        QVERIFY(pages->widget(page)->isEnabled());
    }
    shown.window.switchPage(1, true);
    for (int page = 0; page < 4; ++page)
        QCOMPARE(pages->widget(page)->isEnabled(), page == 1);
}

void TestOpDialog::readsTheFileOnce()
{
    m_sandbox->store("Image/ColorRes", "72");
    Shown shown;
    shown.dialog.close();
    m_sandbox->store("Image/ColorRes", "96");
    shown.dialog.show();
    QCOMPARE(shown.window.value("lineEdit_clr_res"), QString("72"));
}

void TestOpDialog::loadingAgainHidesAndShows()
{
    Shown shown;
    for (const char *stored : {"0", "0", "2"}) {
        m_sandbox->store("Image/MonoType", stored);
        QVERIFY(QMetaObject::invokeMethod(&shown.dialog, "setallowshow"));
        for (const QString &name : trios.value("comboBox__mno_down_type"))
            QCOMPARE(shown.window.isShown(name), *stored != '0');
    }
}

// Apply and Cancel

void TestOpDialog::applyWritesEveryKey()
{
    const Shown shown;
    shown.window.press("pushButton_apply");
    const QSettings settings(m_sandbox->settingsFile(), QSettings::IniFormat);
    QCOMPARE(settings.allKeys().size(), qsizetype(std::size(allOptions)));
    for (const auto &[key, control] : allOptions)
        QCOMPARE(settings.value(key, "(absent)").toString(), shown.window.value(control));
}

void TestOpDialog::applyClosesFirst()
{
    Shown shown;
    HideWatch watch(m_sandbox->settingsFile());
    shown.dialog.installEventFilter(&watch);
    shown.window.press("pushButton_apply");
    QCOMPARE(watch.fileOnHiding, HideWatch::File::absent);
    QVERIFY(QFile::exists(m_sandbox->settingsFile()));
}

void TestOpDialog::applyKeepsTheFolders()
{
    m_sandbox->store("dir/input", "/in");
    m_sandbox->store("dir/output", "/out");
    const Shown shown;
    shown.window.press("pushButton_apply");
    QCOMPARE(m_sandbox->stored("dir/input"), QString("/in"));
    QCOMPARE(m_sandbox->stored("dir/output"), QString("/out"));
}

void TestOpDialog::applyWritesDisabledPages()
{
    const Shown shown;
    shown.window.choose("comboBox_gry_compress", 2);
    shown.window.check("checkBox_subset", false);
    shown.window.type("lineEdit_userpassword", "secret");
    shown.window.type("lineEdit_title", "A title");
    for (int page = 0; page < 4; ++page)
        shown.window.switchPage(page, false);
    shown.window.press("pushButton_apply");
    for (const char *key : {"Image/Image", "Fonts/Fonts", "Secur/Secur", "Annot/Annot"})
        QCOMPARE(m_sandbox->stored(key), QString("No"));
    QCOMPARE(m_sandbox->stored("Image/GrayEnc"), QString("2"));
    QCOMPARE(m_sandbox->stored("Fonts/Sub"), QString("No"));
    QCOMPARE(m_sandbox->stored("Secur/UsrPwd"), QString("secret"));
    QCOMPARE(m_sandbox->stored("Annot/Tit"), QString("A title"));
}

void TestOpDialog::applyWritesTheTextAsTyped()
{
    {
        const Shown shown;
        shown.window.type("lineEdit_clr_res", "  ");
        shown.window.type("lineEdit__gry_res", "abc");
        shown.window.type("lineEdit_mno_res", "");
        shown.window.press("pushButton_apply");
    }
    QCOMPARE(m_sandbox->stored("Image/ColorRes"), QString("  "));
    QCOMPARE(m_sandbox->stored("Image/GrayRes"), QString("abc"));
    QCOMPARE(m_sandbox->stored("Image/MonoRes"), QString());

    const Shown shown;
    QCOMPARE(shown.window.value("lineEdit_clr_res"), QString("150"));
    QCOMPARE(shown.window.value("lineEdit__gry_res"), QString("abc"));
    QCOMPARE(shown.window.value("lineEdit_mno_res"), QString("300"));
}

void TestOpDialog::halfCheckedPagesAreOff()
{
    const Shown shown;
    auto *items = shown.window.find<QListWidget>("listWidge_option");
    for (int page = 0; page < 4; ++page)
        items->item(page)->setCheckState(Qt::PartiallyChecked);
    const auto *pages = shown.window.find<QStackedWidget>("stackedWidget_option");
    for (int page = 0; page < 4; ++page)
        QVERIFY(!pages->widget(page)->isEnabled());
    shown.window.press("pushButton_apply");
    for (const char *key : {"Image/Image", "Fonts/Fonts", "Secur/Secur", "Annot/Annot"})
        QCOMPARE(m_sandbox->stored(key), QString("No"));
    QVERIFY(readFile(m_sandbox->markFile()).startsWith(" [ /Creator ( )"));
}

void TestOpDialog::cancelWritesNothingAndRevertsNothing()
{
    const Shown shown;
    shown.window.check("checkBox_allow_copy", false);
    shown.window.press("pushButton_cancel");
    QVERIFY(!shown.dialog.isVisible());
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
    QVERIFY(!QFile::exists(m_sandbox->markFile()));
    QCOMPARE(shown.window.value("checkBox_allow_copy"), QString("No"));
}

void TestOpDialog::closingWritesNothing()
{
    Shown shown;
    shown.window.type("lineEdit_title", "x");
    QVERIFY(shown.dialog.close());
    QVERIFY(!shown.dialog.isVisible());
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
}

void TestOpDialog::editingCancelledShowsAgainAndIsSavedLater()
{
    Shown shown;
    shown.window.type("lineEdit_author", "Zoë");
    shown.window.press("pushButton_cancel");
    shown.dialog.show();
    QCOMPARE(shown.window.value("lineEdit_author"), QString("Zoë"));
    shown.window.press("pushButton_apply");
    QCOMPARE(m_sandbox->stored("Annot/Aut"), QString("Zoë"));
}

// Reset All

void TestOpDialog::resetValues_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("expected");

    for (const auto &[key, control] : allOptions) {
        const QString name = control;
        QString expected;
        if (name == "comboBox_mno_compress")
            expected = "4";
        else if (trios.contains(name))
            expected = "3";
        else if (name.startsWith("comboBox"))
            expected = "1";
        else if (name == "lineEdit_mno_res")
            expected = "300";
        else if (name.endsWith("_res"))
            expected = "150";
        else if (name == "Image" || name == "Fonts" || QString(key).startsWith("Fonts/"))
            expected = "Ok";
        else if (!name.startsWith("lineEdit"))
            expected = "No";
        const bool isFlag = expected == "Ok" || expected == "No";
        const QString other = isFlag ? (expected == "Ok" ? "No" : "Ok") : QString("2");
        QTest::newRow(control) << key << other << expected;
    }
}

// From the opposite of what each becomes.
void TestOpDialog::resetValues()
{
    QFETCH(QString, key);
    QFETCH(QString, stored);
    m_sandbox->store(key, stored);
    const Shown shown;
    QCOMPARE(shown.window.value(QTest::currentDataTag()), stored);
    shown.window.press("pushButton_reset");
    QTEST(shown.window.value(QTest::currentDataTag()), "expected");
}

void TestOpDialog::resetSwitchesThePages()
{
    const Shown shown;
    shown.window.turnTo(2);
    shown.window.press("pushButton_reset");
    const auto *pages = shown.window.find<QStackedWidget>("stackedWidget_option");
    for (int page = 0; page < 4; ++page)
        QCOMPARE(pages->widget(page)->isEnabled(), page < 2);
    QCOMPARE(pages->currentIndex(), 2);
    QCOMPARE(shown.window.find<QListWidget>("listWidge_option")->currentRow(), 2);
    QVERIFY(shown.dialog.isVisible());
}

// No item changes then, so nothing but the reset itself tells the pages.
void TestOpDialog::resetSwitchesPagesThatWereLoadedAsOff()
{
    for (const char *key : {"Secur/Secur", "Annot/Annot"})
        m_sandbox->store(key, "No");
    const Shown shown;
    shown.window.press("pushButton_reset");
    const auto *pages = shown.window.find<QStackedWidget>("stackedWidget_option");
    for (int page = 0; page < 4; ++page)
        QCOMPARE(pages->widget(page)->isEnabled(), page < 2);
}

void TestOpDialog::resetShowsTheResolutions()
{
    for (const char *key : {"Image/ColorType", "Image/GrayType", "Image/MonoType"})
        m_sandbox->store(key, "0");
    const Shown shown;
    shown.window.press("pushButton_reset");
    for (const QStringList &trio : trios) {
        for (const QString &name : trio)
            QVERIFY2(shown.window.isShown(name), qPrintable(name));
    }
}

// The page itself is off.
void TestOpDialog::resetAllowsPdfa()
{
    m_sandbox->store("Secur/UsrPwd", "u");
    const Shown shown;
    shown.window.press("pushButton_reset");
    QVERIFY(!shown.window.isShown("groupBox_warningPDFA"));
    shown.window.switchPage(3, true);
    QVERIFY(shown.window.find<QCheckBox>("checkBox_pdfa")->isEnabled());
}

void TestOpDialog::resetAndCancelLeaveTheFile()
{
    m_sandbox->store("Image/ColorRes", "72");
    m_sandbox->store("Secur/AllowPri", "Ok");
    const QByteArray before = readFile(m_sandbox->settingsFile());
    Shown shown;
    shown.window.press("pushButton_reset");
    shown.window.press("pushButton_cancel");
    QCOMPARE(readFile(m_sandbox->settingsFile()), before);
    QVERIFY(!QFile::exists(m_sandbox->markFile()));
    shown.dialog.show();
    QCOMPARE(shown.window.value("lineEdit_clr_res"), QString("150"));
    QCOMPARE(shown.window.value("checkBox_allow_print"), QString("No"));
}

// The document information mark file

void TestOpDialog::markFile_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char *field, const char *text, const QByteArray &expected) {
        QTest::addRow("%s (%s)", field, text) << field << text << expected;
    };
    row("lineEdit_title", "",
        "[ /Title ()\n /Author () \n /Subject () \n /Keywords () \n /Creator () \n /Producer () "
        "\n /DOCINFO pdfmark");
    row("lineEdit_title", "T",
        "[ /Title (T)\n /Author () \n /Subject () \n /Keywords () \n /Creator () \n /Producer () "
        "\n /DOCINFO pdfmark");
    row("lineEdit_author", "A",
        "[ /Title ()\n /Author (A) \n /Subject () \n /Keywords () \n /Creator () \n /Producer () "
        "\n /DOCINFO pdfmark");
    row("lineEdit_subject", "S",
        "[ /Title ()\n /Author () \n /Subject (S) \n /Keywords () \n /Creator () \n /Producer () "
        "\n /DOCINFO pdfmark");
    row("lineEdit_keywords", "K",
        "[ /Title ()\n /Author () \n /Subject () \n /Keywords (K) \n /Creator () \n /Producer () "
        "\n /DOCINFO pdfmark");
    row("lineEdit_creator", "C",
        "[ /Title ()\n /Author () \n /Subject () \n /Keywords () \n /Creator (C) \n /Producer () "
        "\n /DOCINFO pdfmark");
    row("lineEdit_producer", "P",
        "[ /Title ()\n /Author () \n /Subject () \n /Keywords () \n /Creator () \n /Producer (P) "
        "\n /DOCINFO pdfmark");
    row("lineEdit_author", "unbalanced (",
        "[ /Title ()\n /Author (unbalanced () \n /Subject () \n /Keywords () \n /Creator () "
        "\n /Producer () \n /DOCINFO pdfmark");
    row("lineEdit_subject", "Zoë",
        "[ /Title ()\n /Author () \n /Subject (Zo\xc3\xab) \n /Keywords () \n /Creator () "
        "\n /Producer () \n /DOCINFO pdfmark");
}

void TestOpDialog::markFile()
{
    QFETCH(QString, field);
    QFETCH(QString, text);
    const Shown shown;
    shown.window.type(field, text);
    shown.window.press("pushButton_apply");
    QTEST(readFile(m_sandbox->markFile()), "expected");
}

void TestOpDialog::markFileOfAPageThatIsOff()
{
    const Shown shown;
    shown.window.type("lineEdit_title", "T");
    shown.window.switchPage(3, false);
    shown.window.press("pushButton_apply");
    QCOMPARE(readFile(m_sandbox->markFile()),
             QByteArray(" [ /Creator ( ) \n /Producer ( ) \n /DOCINFO pdfmark"));
}

void TestOpDialog::markFileThatCannotBeWritten()
{
    QVERIFY(QDir().mkdir(m_sandbox->markFile()));
    const Shown shown;
    shown.window.press("pushButton_apply");
    QVERIFY(!shown.dialog.isVisible());
    QCOMPARE(m_sandbox->stored("Annot/PDFA"), QString("No"));
    QVERIFY(QFileInfo(m_sandbox->markFile()).isDir());
}

QTEST_MAIN(TestOpDialog)
#include "tst_opdialog.moc"
