#include "src/opdialog.h"
#include "support/bound.h"
#include "support/optionswindow.h"
#include "support/sandbox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMap>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>

#include <memory>

namespace {

// A protected function of QObject, opened for counting connections.
int receiverCount(const QObject *sender, const char *signal)
{
    struct Opened : QObject
    {
        using QObject::receivers;
    };
    return (sender->*&Opened::receivers)(signal);
}

struct Change
{
    const char *control;
    const char *signal;
};

const Change customChanges[] = {
    {"comboBox_clr_down_type", SIGNAL(currentIndexChanged(int))},
    {"comboBox_clr_compress", SIGNAL(currentIndexChanged(int))},
    {"comboBox_gry_down_type", SIGNAL(currentIndexChanged(int))},
    {"comboBox_gry_compress", SIGNAL(currentIndexChanged(int))},
    {"comboBox__mno_down_type", SIGNAL(currentIndexChanged(int))},
    {"comboBox_mno_compress", SIGNAL(currentIndexChanged(int))},
    {"lineEdit_clr_res", SIGNAL(textChanged(QString))},
    {"lineEdit__gry_res", SIGNAL(textChanged(QString))},
    {"lineEdit_mno_res", SIGNAL(textChanged(QString))},
    {"lineEdit_author", SIGNAL(textChanged(QString))},
    {"lineEdit_creator", SIGNAL(textChanged(QString))},
    {"lineEdit_keywords", SIGNAL(textChanged(QString))},
    {"lineEdit_producer", SIGNAL(textChanged(QString))},
    {"lineEdit_subject", SIGNAL(textChanged(QString))},
    {"lineEdit_title", SIGNAL(textChanged(QString))},
    {"lineEdit_ownerpassword", SIGNAL(textChanged(QString))},
    {"lineEdit_userpassword", SIGNAL(textChanged(QString))},
    {"checkBox_embedallfonts", SIGNAL(toggled(bool))},
    {"checkBox_compressfonts", SIGNAL(toggled(bool))},
    {"checkBox_subset", SIGNAL(toggled(bool))},
    {"checkBox_pdfa", SIGNAL(toggled(bool))},
    {"checkBox_allow_add", SIGNAL(toggled(bool))},
    {"checkBox_allow_copy", SIGNAL(toggled(bool))},
    {"checkBox_allow_modcontents", SIGNAL(toggled(bool))},
    {"checkBox_allow_print", SIGNAL(toggled(bool))},
};

constexpr int imagePage = 0;
constexpr int fontsPage = 1;
constexpr int securityPage = 2;
constexpr int descriptionPage = 3;

} // namespace

class TestOpDialogRules : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void connections_data();
    void connections();
    void customConnections_data();
    void customConnections();
    void customConnectionsAreCutWhileLoading();
    void customConnectionsStayDuringReset();
    void pagesAreNotEnabledWhileLoading();
    void emptySlotsDoNothing_data();
    void emptySlotsDoNothing();

    void rowShowsItsPage_data();
    void rowShowsItsPage();
    void itemEnablesItsPage_data();
    void itemEnablesItsPage();
    void disabledPageKeepsItsValuesAndCanBeSeen();
    void securityOffAllowsPdfa();
    void otherItemsLeaveTheWarning();
    void securityOnAgainWaitsForAPasswordField_data();
    void securityOnAgainWaitsForAPasswordField();
    void menuOfAPasswordFieldDoesNotLeaveIt();

    void typeShowsItsResolution_data();
    void typeShowsItsResolution();
    void passwordsWarn_data();
    void passwordsWarn();
    void clearedPasswordsAllowPdfa();
    void warningWaitsUntilTheFieldIsLeft();
    void passwordWarnsThoughItsPageIsOff();

    void focusOrder_data();
    void focusOrder();
    void returnApplies();
    void returnOnTheListApplies();
    void returnPressesTheButtonInFocus();
    void escapeClosesLikeCancel();
    void everythingByKeyboard();

private:
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return m_window->find<Widget>(name);
    }
    bool isPageEnabled(int page) const
    {
        return find<QStackedWidget>("stackedWidget_option")->widget(page)->isEnabled();
    }
    bool warns() const { return m_window->isShown("groupBox_warningPDFA"); }
    bool allowsPdfa() const { return find<QCheckBox>("checkBox_pdfa")->isEnabledTo(page()); }
    QWidget *page() const { return find<QWidget>("stackedWidget_annotation"); }
    void tabTo(const char *name) const;

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<OpDialog> m_dialog;
    std::unique_ptr<OptionsWindow> m_window;
};

void TestOpDialogRules::init()
{
    m_sandbox = std::make_unique<Sandbox>();
    m_dialog = std::make_unique<OpDialog>();
    m_window = std::make_unique<OptionsWindow>(*m_dialog);
}

void TestOpDialogRules::cleanup()
{
    m_window.reset();
    m_dialog.reset();
    m_sandbox.reset();
}

// Connections

void TestOpDialogRules::connections_data()
{
    QTest::addColumn<QString>("sender");
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QString>("receiver");
    QTest::addColumn<QByteArray>("slot");

    const auto row = [](const char *sender, const char *signal, const char *slot,
                        const char *receiver = "OpDialog") {
        QTest::addRow("%s %s", sender, slot + 1)
            << sender << QByteArray(signal) << receiver << QByteArray(slot);
    };
    row("listWidge_option", SIGNAL(currentRowChanged(int)), SLOT(setCurrentIndex(int)),
        "stackedWidget_option");
    row("listWidge_option", SIGNAL(itemChanged(QListWidgetItem *)), SLOT(setstackenable()));
    row("stackedWidget_option", SIGNAL(currentChanged(int)), SLOT(changeStackedDisplay()));
    row("comboBox_clr_down_type", SIGNAL(currentIndexChanged(int)), SLOT(closeClrDSres()));
    row("comboBox_gry_down_type", SIGNAL(currentIndexChanged(int)), SLOT(closeGryDSres()));
    row("comboBox__mno_down_type", SIGNAL(currentIndexChanged(int)), SLOT(closeMnoDSres()));
    row("lineEdit_ownerpassword", SIGNAL(editingFinished()), SLOT(setwarning()));
    row("lineEdit_userpassword", SIGNAL(editingFinished()), SLOT(setwarning()));
    row("pushButton_reset", SIGNAL(clicked()), SLOT(setGeneralSetting()));
    row("pushButton_cancel", SIGNAL(clicked()), SLOT(close()));
    row("pushButton_apply", SIGNAL(clicked()), SLOT(close()));
    row("pushButton_apply", SIGNAL(clicked()), SLOT(setop()));
}

// A disconnect takes exactly this connection, and only if it was there.
void TestOpDialogRules::connections()
{
    QFETCH(QString, sender);
    QFETCH(QByteArray, signal);
    QFETCH(QString, receiver);
    QFETCH(QByteArray, slot);
    const auto *from = m_window->find<QObject>(sender);
    const QObject *to = receiver == "OpDialog" ? m_dialog.get() : m_window->find<QObject>(receiver);
    const int before = receiverCount(from, signal);
    QVERIFY(QObject::disconnect(from, signal, to, slot));
    QCOMPARE(receiverCount(from, signal), before - 1);
}

void TestOpDialogRules::customConnections_data()
{
    QTest::addColumn<QByteArray>("signal");
    for (const Change &change : customChanges)
        QTest::newRow(change.control) << QByteArray(change.signal);
    QCOMPARE(std::size(customChanges), std::size_t(25));
}

void TestOpDialogRules::customConnections()
{
    QFETCH(QByteArray, signal);
    const auto *control = m_window->find<QObject>(QTest::currentDataTag());
    const auto count = [&] { return receiverCount(control, signal); };
    const int made = count();
    QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), "allCustomDisconnection"));
    QCOMPARE(count(), made - 1);
    QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), "allCustomConnection"));
    QCOMPARE(count(), made);
    QVERIFY(QObject::disconnect(control, signal, m_dialog.get(), SLOT(linkCustomSetting())));
    QCOMPARE(count(), made - 1);
}

// Loading changes every control here; each looks at all connections when it changes.
void TestOpDialogRules::customConnectionsAreCutWhileLoading()
{
    const auto counts = [this] {
        QList<int> list;
        for (const Change &change : customChanges)
            list.append(receiverCount(m_window->find<QObject>(change.control), change.signal));
        return list;
    };
    QList<QList<int>> seen;
    connect(find<QComboBox>("comboBox_clr_down_type"), &QComboBox::currentIndexChanged, this,
            [&] { seen.append(counts()); });
    connect(find<QLineEdit>("lineEdit_producer"), &QLineEdit::textChanged, this,
            [&] { seen.append(counts()); });
    m_sandbox->store("Image/ColorType", "1");
    m_sandbox->store("Annot/Pro", "P");

    const QList<int> before = counts();
    QList<int> cut = before;
    for (int &count : cut)
        --count;
    QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), "setallowshow"));
    QCOMPARE(seen, QList<QList<int>>({cut, cut}));
    QCOMPARE(counts(), before);
}

// Each control that the reset changes tells so.
void TestOpDialogRules::customConnectionsStayDuringReset()
{
    QMap<QString, QString> others = {
        {"checkBox_embedallfonts", "No"},
        {"checkBox_compressfonts", "No"},
        {"checkBox_subset", "No"},
        {"checkBox_pdfa", "Ok"},
    };
    for (const char *box : {"add", "copy", "modcontents", "print"})
        others.insert(QString("checkBox_allow_") + box, "Ok");
    for (const Change &change : customChanges) {
        if (!others.contains(change.control))
            others.insert(change.control, QString(change.control).startsWith("combo") ? "2" : "7");
    }
    // With a password the check box for PDF/A is out of reach.
    for (auto other = others.cbegin(); other != others.cend(); ++other) {
        if (!other.key().endsWith("password"))
            m_window->set(other.key(), other.value());
    }
    for (const char *field : {"lineEdit_ownerpassword", "lineEdit_userpassword"})
        m_window->set(field, "7");

    std::vector<std::unique_ptr<QSignalSpy>> spies;
    for (const Change &change : customChanges) {
        auto *control = m_window->find<QObject>(change.control);
        spies.push_back(std::make_unique<QSignalSpy>(control, change.signal));
    }
    const auto *title = find<QLineEdit>("lineEdit_title");
    const int before = receiverCount(title, SIGNAL(textChanged(QString)));
    int during = 0;
    const auto watch = connect(title, &QLineEdit::textChanged, this, [&] {
        during = receiverCount(title, SIGNAL(textChanged(QString)));
    });
    m_window->press("pushButton_reset");
    QCOMPARE(during, before + 1); // and this watch
    disconnect(watch);
    for (std::size_t index = 0; index < spies.size(); ++index)
        QVERIFY2(!spies[index]->isEmpty(), customChanges[index].control);
}

void TestOpDialogRules::pagesAreNotEnabledWhileLoading()
{
    m_sandbox->store("Image/Image", "No");
    QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), "setallowshow"));
    QVERIFY(!m_window->isPageOn(imagePage));
    QVERIFY(isPageEnabled(imagePage));
}

void TestOpDialogRules::emptySlotsDoNothing_data()
{
    QTest::addColumn<QByteArray>("slot");
    for (const char *slot : {"changeStackedDisplay", "linkCustomSetting", "InitialTablewidget"})
        QTest::newRow(slot) << QByteArray(slot);
}

void TestOpDialogRules::emptySlotsDoNothing()
{
    QFETCH(QByteArray, slot);
    const QImage before = m_dialog->grab().toImage();
    QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), slot));
    QCOMPARE(m_dialog->grab().toImage(), before);
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
}

// Pages

void TestOpDialogRules::rowShowsItsPage_data()
{
    QTest::addColumn<QString>("page");
    QTest::newRow("0") << "stackedWidget_image";
    QTest::newRow("1") << "stackedWidget_fonts";
    QTest::newRow("2") << "stackedWidget_security";
    QTest::newRow("3") << "stackedWidget_annotation";
}

void TestOpDialogRules::rowShowsItsPage()
{
    const int row = QByteArray(QTest::currentDataTag()).toInt();
    m_window->turnTo((row + 1) % 4);
    m_window->turnTo(row);
    QFETCH(QString, page);
    QVERIFY(m_window->find<QWidget>(page)->isVisible());
}

void TestOpDialogRules::itemEnablesItsPage_data()
{
    QTest::addColumn<int>("page");
    for (int page = 0; page < 4; ++page)
        QTest::addRow("%d", page) << page;
}

void TestOpDialogRules::itemEnablesItsPage()
{
    QFETCH(int, page);
    m_window->switchPage(page, false);
    for (int other = 0; other < 4; ++other)
        QCOMPARE(isPageEnabled(other), other != page);
    m_window->switchPage(page, true);
    for (int other = 0; other < 4; ++other)
        QVERIFY(isPageEnabled(other));
}

void TestOpDialogRules::disabledPageKeepsItsValuesAndCanBeSeen()
{
    m_window->choose("comboBox_clr_compress", 2);
    m_window->check("checkBox_embedallfonts", false);
    m_window->switchPage(imagePage, false);
    m_window->switchPage(fontsPage, false);
    QVERIFY(find<QCheckBox>("checkBox_embedallfonts")->isVisible());
    QVERIFY(!find<QCheckBox>("checkBox_embedallfonts")->isEnabled());
    QCOMPARE(find<QComboBox>("comboBox_clr_compress")->currentIndex(), 2);
    m_window->switchPage(imagePage, true);
    QVERIFY(find<QComboBox>("comboBox_clr_compress")->isEnabled());
    QCOMPARE(find<QComboBox>("comboBox_clr_compress")->currentIndex(), 2);
}

void TestOpDialogRules::securityOffAllowsPdfa()
{
    m_window->type("lineEdit_userpassword", "u");
    QVERIFY(warns());
    QVERIFY(!allowsPdfa());
    m_window->switchPage(securityPage, false);
    QVERIFY(!warns());
    QVERIFY(allowsPdfa());
}

void TestOpDialogRules::otherItemsLeaveTheWarning()
{
    m_window->type("lineEdit_userpassword", "u");
    for (const int page : {imagePage, fontsPage, descriptionPage}) {
        m_window->switchPage(page, false);
        QVERIFY(warns());
        QVERIFY(!allowsPdfa());
        m_window->switchPage(page, true);
        QVERIFY(warns());
        QVERIFY(!allowsPdfa());
    }
}

void TestOpDialogRules::securityOnAgainWaitsForAPasswordField_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<bool>("byAnotherWindow");
    QTest::newRow("user") << "lineEdit_userpassword" << false;
    QTest::newRow("owner") << "lineEdit_ownerpassword" << false;
    QTest::newRow("another window") << "lineEdit_userpassword" << true;
}

void TestOpDialogRules::menuOfAPasswordFieldDoesNotLeaveIt()
{
    m_window->turnTo(securityPage);
    auto *field = find<QLineEdit>("lineEdit_userpassword");
    field->setFocus();
    QTest::keyClicks(field, "u");
    QContextMenuEvent menuEvent(QContextMenuEvent::Keyboard, {5, 5},
                                field->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(field, &menuEvent);
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget(), bound);
    QVERIFY(!warns());
    QApplication::activePopupWidget()->close();
    QVERIFY(!warns());
    QTest::keyClick(field, Qt::Key_Tab);
    QVERIFY(warns());
}

void TestOpDialogRules::securityOnAgainWaitsForAPasswordField()
{
    QFETCH(QString, field);
    m_window->type("lineEdit_userpassword", "u");
    m_window->switchPage(securityPage, false);
    m_window->switchPage(securityPage, true);
    QVERIFY(!warns());
    QVERIFY(allowsPdfa());
    // Another item's change doesn't bring the warning back either.
    m_window->switchPage(imagePage, false);
    QVERIFY(!warns());
    m_window->turnTo(securityPage);
    find<QLineEdit>(qPrintable(field))->setFocus();
    QVERIFY(!warns());
    QFETCH(bool, byAnotherWindow);
    QWidget other;
    if (byAnotherWindow) {
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
    } else {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QVERIFY(warns());
    QVERIFY(!allowsPdfa());
}

// Resolutions

void TestOpDialogRules::typeShowsItsResolution_data()
{
    QTest::addColumn<QString>("resolution");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("trio");

    QTest::newRow("comboBox_clr_down_type")
        << "lineEdit_clr_res"
        << "Image/ColorRes" << QStringList{"label_CLR_DSR", "label_PPI1", "lineEdit_clr_res"};
    QTest::newRow("comboBox_gry_down_type")
        << "lineEdit__gry_res"
        << "Image/GrayRes" << QStringList{"label_GRY_DSR", "label_PPI2", "lineEdit__gry_res"};
    QTest::newRow("comboBox__mno_down_type")
        << "lineEdit_mno_res"
        << "Image/MonoRes" << QStringList{"label_MNO_DSR", "label_PPI3", "lineEdit_mno_res"};
}

void TestOpDialogRules::typeShowsItsResolution()
{
    QFETCH(QString, resolution);
    QFETCH(QString, key);
    QFETCH(QStringList, trio);
    const QStringList others = {"label_CLR_DSR", "label_PPI1", "lineEdit_clr_res",
                                "label_GRY_DSR", "label_PPI2", "lineEdit__gry_res",
                                "label_MNO_DSR", "label_PPI3", "lineEdit_mno_res"};
    m_window->type(resolution, "77");
    for (const int type : {0, 1, 0, 2, 0, 3}) {
        m_window->choose(QTest::currentDataTag(), type);
        for (const QString &name : others)
            QVERIFY2(m_window->isShown(name) == (type != 0 || !trio.contains(name)),
                     qPrintable(name));
    }
    m_window->choose(QTest::currentDataTag(), 0);
    m_window->press("pushButton_apply");
    QCOMPARE(m_sandbox->stored(key), QString("77"));
}

// Passwords and PDF/A

void TestOpDialogRules::passwordsWarn_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("owner");

    QTest::newRow("user") << "u"
                          << "";
    QTest::newRow("owner") << ""
                           << "o";
    QTest::newRow("both") << "u"
                          << "o";
    QTest::newRow("a single blank") << " "
                                    << "";
}

void TestOpDialogRules::passwordsWarn()
{
    QFETCH(QString, user);
    QFETCH(QString, owner);
    m_window->check("checkBox_pdfa", true);
    m_window->type("lineEdit_userpassword", user);
    m_window->type("lineEdit_ownerpassword", owner);
    QVERIFY(warns());
    QVERIFY(!allowsPdfa());
    QVERIFY(find<QCheckBox>("checkBox_pdfa")->isChecked());
    m_window->press("pushButton_apply");
    QCOMPARE(m_sandbox->stored("Annot/PDFA"), QString("Ok"));
}

void TestOpDialogRules::clearedPasswordsAllowPdfa()
{
    m_window->check("checkBox_pdfa", true);
    m_window->type("lineEdit_userpassword", "u");
    m_window->type("lineEdit_ownerpassword", "o");
    m_window->type("lineEdit_userpassword", "");
    QVERIFY(warns());
    QVERIFY(!allowsPdfa());
    m_window->type("lineEdit_ownerpassword", "");
    QVERIFY(!warns());
    QVERIFY(allowsPdfa());
    QVERIFY(find<QCheckBox>("checkBox_pdfa")->isChecked());
}

void TestOpDialogRules::warningWaitsUntilTheFieldIsLeft()
{
    m_window->turnTo(securityPage);
    auto *user = find<QLineEdit>("lineEdit_userpassword");
    user->setFocus();
    QTest::keyClicks(user, "u");
    QVERIFY(!warns());
    QTest::keyClick(user, Qt::Key_Tab);
    QVERIFY(warns());
}

// A page that was loaded as off can be edited.
void TestOpDialogRules::passwordWarnsThoughItsPageIsOff()
{
    m_sandbox->store("Secur/Secur", "No");
    QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), "setallowshow"));
    m_window->type("lineEdit_userpassword", "u");
    QVERIFY(!m_window->isPageOn(securityPage));
    QVERIFY(warns());
    QVERIFY(!allowsPdfa());
}

// Keyboard

void TestOpDialogRules::tabTo(const char *name) const
{
    const auto *wanted = find<QWidget>(name);
    for (int step = 0; QApplication::focusWidget() != wanted; ++step) {
        QVERIFY2(step < 40, name);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
}

void TestOpDialogRules::focusOrder_data()
{
    QTest::addColumn<QString>("fields");

    QTest::newRow("0") << "lineEdit_clr_res comboBox_clr_down_type comboBox_clr_compress"
                          " comboBox_gry_compress comboBox_gry_down_type lineEdit__gry_res"
                          " comboBox__mno_down_type lineEdit_mno_res comboBox_mno_compress";
    QTest::newRow("1") << "checkBox_embedallfonts checkBox_subset checkBox_compressfonts";
    QTest::newRow("2") << "lineEdit_userpassword lineEdit_ownerpassword checkBox_allow_print"
                          " checkBox_allow_modcontents checkBox_allow_copy checkBox_allow_add";
    QTest::newRow("3") << "checkBox_pdfa lineEdit_title lineEdit_author lineEdit_subject"
                          " lineEdit_keywords lineEdit_creator lineEdit_producer";
}

// From the list through the page to the buttons, and round again.
void TestOpDialogRules::focusOrder()
{
    const auto *list = find<QListWidget>("listWidge_option");
    QCOMPARE(QApplication::focusWidget(), list);
    for (int row = QByteArray(QTest::currentDataTag()).toInt(); row > 0; --row)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QStringList names;
    do {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        names.append(QApplication::focusWidget()->objectName());
    } while (QApplication::focusWidget() != list && names.size() < 40);
    QFETCH(QString, fields);
    QCOMPARE(names.join(' '),
             fields + " pushButton_reset pushButton_apply pushButton_cancel listWidge_option");
}

void TestOpDialogRules::returnApplies()
{
    m_window->turnTo(descriptionPage);
    auto *title = find<QLineEdit>("lineEdit_title");
    title->setFocus();
    QTest::keyClicks(title, "T");
    QTest::keyClick(title, Qt::Key_Return);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_sandbox->stored("Annot/Tit"), QString("T"));
}

void TestOpDialogRules::returnOnTheListApplies()
{
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_sandbox->stored("Image/Image"), QString("Ok"));
}

void TestOpDialogRules::returnPressesTheButtonInFocus()
{
    m_window->type("lineEdit_clr_res", "72");
    tabTo("pushButton_reset");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(find<QLineEdit>("lineEdit_clr_res")->text(), QString("150"));
    tabTo("pushButton_cancel");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
}

void TestOpDialogRules::escapeClosesLikeCancel()
{
    m_window->type("lineEdit_clr_res", "72");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
    QCOMPARE(find<QLineEdit>("lineEdit_clr_res")->text(), QString("72"));
}

void TestOpDialogRules::everythingByKeyboard()
{
    const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    const auto enter = [](const char *text) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(QApplication::focusWidget(), text);
    };
    for (const char *res : {"lineEdit_clr_res", "lineEdit__gry_res", "lineEdit_mno_res"}) {
        tabTo(res);
        enter("72");
    }
    for (const char *type :
         {"comboBox_clr_down_type", "comboBox_gry_down_type", "comboBox__mno_down_type",
          "comboBox_clr_compress", "comboBox_gry_compress", "comboBox_mno_compress"}) {
        tabTo(type);
        press(Qt::Key_Home);
        press(Qt::Key_Down);
        press(Qt::Key_Down);
    }
    tabTo("listWidge_option");
    press(Qt::Key_Down);
    for (const char *box :
         {"checkBox_embedallfonts", "checkBox_subset", "checkBox_compressfonts"}) {
        tabTo(box);
        press(Qt::Key_Space);
    }
    tabTo("listWidge_option");
    press(Qt::Key_Space); // Fonts off
    press(Qt::Key_Down);
    for (const char *password : {"lineEdit_userpassword", "lineEdit_ownerpassword"}) {
        tabTo(password);
        enter("pw");
    }
    for (const char *box : {"checkBox_allow_print", "checkBox_allow_modcontents",
                            "checkBox_allow_copy", "checkBox_allow_add"}) {
        tabTo(box);
        press(Qt::Key_Space);
    }
    tabTo("listWidge_option");
    press(Qt::Key_Space); // Security off, which allows PDF/A
    press(Qt::Key_Down);
    tabTo("checkBox_pdfa");
    press(Qt::Key_Space);
    for (const char *field : {"lineEdit_title", "lineEdit_author", "lineEdit_subject",
                              "lineEdit_keywords", "lineEdit_creator", "lineEdit_producer"}) {
        tabTo(field);
        enter(field);
    }
    tabTo("pushButton_apply");
    press(Qt::Key_Space);

    QVERIFY(!m_dialog->isVisible());
    const auto stored = [this](const char *key) { return m_sandbox->stored(key); };
    for (const char *key : {"Image/ColorRes", "Image/GrayRes", "Image/MonoRes"})
        QCOMPARE(stored(key), QString("72"));
    for (const char *key : {"Image/ColorType", "Image/GrayType", "Image/MonoType", "Image/ColorEnc",
                            "Image/GrayEnc", "Image/MonoEnc"})
        QCOMPARE(stored(key), QString("2"));
    for (const char *key : {"Secur/UsrPwd", "Secur/OwrPwd"})
        QCOMPARE(stored(key), QString("pw"));
    for (const char *key : {"Fonts/Embed", "Fonts/Sub", "Fonts/Com", "Fonts/Fonts", "Secur/Secur",
                            "Secur/AllowPri", "Secur/AllowMod", "Secur/AllowCop", "Secur/AllowAdd"})
        QCOMPARE(stored(key), QString("No"));
    for (const char *key : {"Image/Image", "Annot/Annot", "Annot/PDFA"})
        QCOMPARE(stored(key), QString("Ok"));
    QCOMPARE(stored("Annot/Tit"), QString("lineEdit_title"));
    QCOMPARE(stored("Annot/Aut"), QString("lineEdit_author"));
    QCOMPARE(stored("Annot/Sub"), QString("lineEdit_subject"));
    QCOMPARE(stored("Annot/Key"), QString("lineEdit_keywords"));
    QCOMPARE(stored("Annot/Cre"), QString("lineEdit_creator"));
    QCOMPARE(stored("Annot/Pro"), QString("lineEdit_producer"));
}

QTEST_MAIN(TestOpDialogRules)
#include "tst_opdialogrules.moc"
