// Reset All.

#include "opdialogtest.h"
#include "support/options.h"

#include <QCheckBox>
#include <QListWidget>
#include <QStackedWidget>
#include <QTest>

class TestOpDialogReset : public OpDialogTest
{
    Q_OBJECT

private slots:
    void resetValues_data();
    void resetValues();
    void resetSwitchesThePages();
    void resetSwitchesPagesThatWereLoadedAsOff();
    void resetShowsTheResolutions();
    void resetAllowsPdfa();
    void resetAndCancelLeaveTheFile();
};

void TestOpDialogReset::resetValues_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("expected");
    for (const Option &option : allOptions())
        QTest::newRow(option.control) << option.key << option.other() << option.reset;
}

// From the opposite of what each becomes.
void TestOpDialogReset::resetValues()
{
    QFETCH(QString, key);
    QFETCH(QString, stored);
    m_sandbox->store(key, stored);
    const ShownOptions shown;
    QCOMPARE(shown.window.value(QTest::currentDataTag()), stored);
    shown.window.press("pushButton_reset");
    QTEST(shown.window.value(QTest::currentDataTag()), "expected");
}

void TestOpDialogReset::resetSwitchesThePages()
{
    const ShownOptions shown;
    shown.window.turnTo(securityPage);
    shown.window.press("pushButton_reset");
    const auto *pages = shown.window.find<QStackedWidget>("stackedWidget_option");
    for (int page = 0; page < pageCount; ++page)
        QCOMPARE(pages->widget(page)->isEnabled(), page < securityPage);
    QCOMPARE(pages->currentIndex(), int(securityPage));
    QCOMPARE(shown.window.find<QListWidget>("listWidge_option")->currentRow(), int(securityPage));
    QVERIFY(shown.dialog.isVisible());
}

// No item changes then, so nothing but the reset itself tells the pages.
void TestOpDialogReset::resetSwitchesPagesThatWereLoadedAsOff()
{
    for (const char *key : {"Secur/Secur", "Annot/Annot"})
        m_sandbox->store(key, "No");
    const ShownOptions shown;
    shown.window.press("pushButton_reset");
    const auto *pages = shown.window.find<QStackedWidget>("stackedWidget_option");
    for (int page = 0; page < pageCount; ++page)
        QCOMPARE(pages->widget(page)->isEnabled(), page < securityPage);
}

void TestOpDialogReset::resetShowsTheResolutions()
{
    for (const char *key : {"Image/ColorType", "Image/GrayType", "Image/MonoType"})
        m_sandbox->store(key, "0");
    const ShownOptions shown;
    shown.window.press("pushButton_reset");
    for (const QString &name : allTrios())
        QVERIFY2(shown.window.isShown(name), qPrintable(name));
}

// The page itself is off.
void TestOpDialogReset::resetAllowsPdfa()
{
    m_sandbox->store("Secur/UsrPwd", "u");
    const ShownOptions shown;
    shown.window.press("pushButton_reset");
    QVERIFY(!shown.window.isShown("groupBox_warningPDFA"));
    shown.window.switchPage(descriptionPage, true);
    QVERIFY(shown.window.find<QCheckBox>("checkBox_pdfa")->isEnabled());
}

void TestOpDialogReset::resetAndCancelLeaveTheFile()
{
    m_sandbox->store("Image/ColorRes", "72");
    m_sandbox->store("Secur/AllowPri", "Ok");
    const QByteArray before = contentOf(m_sandbox->settingsFile());
    ShownOptions shown;
    shown.window.press("pushButton_reset");
    shown.window.press("pushButton_cancel");
    QCOMPARE(contentOf(m_sandbox->settingsFile()), before);
    QVERIFY(!QFile::exists(m_sandbox->markFile()));
    shown.dialog.show();
    QCOMPARE(shown.window.value("lineEdit_clr_res"), QString("150"));
    QCOMPARE(shown.window.value("checkBox_allow_print"), QString("No"));
}

QTEST_MAIN(TestOpDialogReset)
#include "tst_opdialogreset.moc"
