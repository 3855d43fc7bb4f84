// What of the options dialog is shown, enabled and warned of, depending on what.

#include "opdialogtest.h"
#include "support/bound.h"
#include "support/options.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QStackedWidget>
#include <QTest>

class TestOpDialogRules : public ShownOpDialogTest
{
    Q_OBJECT

private slots:
    void pagesAreNotEnabledWhileLoading();
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

private:
    bool isPageEnabled(int page) const
    {
        return find<QStackedWidget>("stackedWidget_option")->widget(page)->isEnabled();
    }
    bool warns() const { return m_window->isShown("groupBox_warningPDFA"); }
    bool allowsPdfa() const
    {
        return find<QCheckBox>("checkBox_pdfa")
            ->isEnabledTo(find<QWidget>("stackedWidget_annotation"));
    }
};

void TestOpDialogRules::pagesAreNotEnabledWhileLoading()
{
    m_sandbox->store("Image/Image", "No");
    QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), "setallowshow"));
    QVERIFY(!m_window->isPageOn(imagePage));
    QVERIFY(isPageEnabled(imagePage));
}

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
    for (int page = 0; page < pageCount; ++page)
        QTest::addRow("%d", page) << page;
}

void TestOpDialogRules::itemEnablesItsPage()
{
    QFETCH(int, page);
    m_window->switchPage(page, false);
    for (int other = 0; other < pageCount; ++other)
        QCOMPARE(isPageEnabled(other), other != page);
    m_window->switchPage(page, true);
    for (int other = 0; other < pageCount; ++other)
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

void TestOpDialogRules::typeShowsItsResolution_data()
{
    QTest::addColumn<QString>("resolution");
    QTest::addColumn<QString>("key");
    QTest::newRow("comboBox_clr_down_type") << "lineEdit_clr_res"
                                            << "Image/ColorRes";
    QTest::newRow("comboBox_gry_down_type") << "lineEdit__gry_res"
                                            << "Image/GrayRes";
    QTest::newRow("comboBox__mno_down_type") << "lineEdit_mno_res"
                                             << "Image/MonoRes";
}

void TestOpDialogRules::typeShowsItsResolution()
{
    QFETCH(QString, resolution);
    QFETCH(QString, key);
    const QStringList trio = trioOf(QTest::currentDataTag());
    m_window->type(resolution, "77");
    for (const int type : {0, 1, 0, 2, 0, 3}) {
        m_window->choose(QTest::currentDataTag(), type);
        for (const QString &name : allTrios())
            QVERIFY2(m_window->isShown(name) == (type != 0 || !trio.contains(name)),
                     qPrintable(name));
    }
    m_window->choose(QTest::currentDataTag(), 0);
    m_window->press("pushButton_apply");
    QCOMPARE(m_sandbox->stored(key), QString("77"));
}

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

QTEST_MAIN(TestOpDialogRules)
#include "tst_opdialogrules.moc"
