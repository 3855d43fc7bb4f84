// What the options dialog makes of a settings file.

#include "opdialogtest.h"
#include "support/options.h"

#include <QCheckBox>
#include <QStackedWidget>
#include <QTest>

class TestOpDialogLoad : public OpDialogTest
{
    Q_OBJECT

private slots:
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
};

void TestOpDialogLoad::withoutSettingsFile_data()
{
    QTest::addColumn<QString>("expected");
    for (const Option &option : allOptions())
        QTest::newRow(option.control) << option.byDefault;
}

void TestOpDialogLoad::withoutSettingsFile()
{
    const ShownOptions shown;
    QTEST(shown.window.value(QTest::currentDataTag()), "expected");
}

void TestOpDialogLoad::withoutSettingsFileNothingIsHiddenButTheWarning()
{
    const ShownOptions shown;
    for (const QString &name : allTrios())
        QVERIFY2(shown.window.isShown(name), qPrintable(name));
    QVERIFY(!shown.window.isShown("groupBox_warningPDFA"));
    QVERIFY(shown.window.find<QCheckBox>("checkBox_pdfa")->isEnabled());
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
    QVERIFY(!QFile::exists(m_sandbox->markFile()));
}

void TestOpDialogLoad::loads_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("expected");

    for (const Option &option : allOptions()) {
        const auto row = [&option](const char *stored, const char *expected) {
            QTest::addRow("%s \"%s\"", option.key, stored)
                << option.key << option.control << stored << expected;
        };
        if (option.isFlag()) {
            row("Ok", "Ok");
            row("No", "No");
            for (const char *other : {"ok", "no", "NO", "", " No", "Ok ", "0", "true"})
                row(other, option.byDefault);
        } else if (option.lastItem >= 0) {
            for (int index = 0; index <= option.lastItem; ++index)
                row(QByteArray::number(index), QByteArray::number(index));
            row(QByteArray::number(option.lastItem + 1), option.byDefault);
            row("7", option.byDefault);
            row("-1", option.byDefault);
            // What is no number reads as 0.
            row("Bicubic", "0");
            row("", "0");
        } else if (option.kind == Option::resolution) {
            row("72", "72");
            row("", option.byDefault);
            row("   ", option.byDefault);
            row("1 2 0", "120");
            row(" 96 ", "96");
            row("abc", "abc");
            row("\t", "\t");
            row("-1", "-1");
        } else {
            for (const char *text : {"", " a  b ", "(\\\"%1;,=", "Zoë 報告書"})
                row(text, text);
        }
    }
}

void TestOpDialogLoad::loads()
{
    QFETCH(QString, key);
    QFETCH(QString, control);
    QFETCH(QString, stored);
    m_sandbox->store(key, stored);
    const ShownOptions shown;
    QTEST(shown.window.value(control), "expected");
}

void TestOpDialogLoad::closedTypeHidesItsResolution_data()
{
    QTest::addColumn<QString>("key");
    for (const Option &option : allOptions()) {
        if (option.kind == Option::type)
            QTest::newRow(option.control) << option.key;
    }
}

void TestOpDialogLoad::closedTypeHidesItsResolution()
{
    QFETCH(QString, key);
    m_sandbox->store(key, "0");
    const ShownOptions shown;
    const QStringList hidden = trioOf(QTest::currentDataTag());
    for (const QString &name : allTrios())
        QVERIFY2(shown.window.isShown(name) != hidden.contains(name), qPrintable(name));
}

void TestOpDialogLoad::unknownTypeHidesNothing()
{
    m_sandbox->store("Image/ColorType", "7");
    const ShownOptions shown;
    for (const QString &name : trioOf("comboBox_clr_down_type"))
        QVERIFY2(shown.window.isShown(name), qPrintable(name));
}

void TestOpDialogLoad::storedPasswords_data()
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

void TestOpDialogLoad::storedPasswords()
{
    QFETCH(QString, user);
    QFETCH(QString, owner);
    m_sandbox->store("Secur/UsrPwd", user);
    m_sandbox->store("Secur/OwrPwd", owner);
    for (const char *page : {"Ok", "No"}) { // a page that is off keeps its passwords
        m_sandbox->store("Secur/Secur", page);
        const ShownOptions shown;
        QTEST(shown.window.isShown("groupBox_warningPDFA"), "warns");
        QTEST(!shown.window.find<QCheckBox>("checkBox_pdfa")->isEnabled(), "warns");
    }
}

void TestOpDialogLoad::disabledPdfaKeepsItsState()
{
    m_sandbox->store("Secur/OwrPwd", "o");
    m_sandbox->store("Annot/PDFA", "Ok");
    const ShownOptions shown;
    const auto *pdfa = shown.window.find<QCheckBox>("checkBox_pdfa");
    QVERIFY(!pdfa->isEnabled());
    QVERIFY(pdfa->isChecked());
    QVERIFY(shown.window.isShown("groupBox_warningPDFA"));
    m_sandbox->store("Annot/PDFA", "(overwritten)");
    shown.window.press("pushButton_apply");
    QCOMPARE(m_sandbox->stored("Annot/PDFA"), QString("Ok"));
}

void TestOpDialogLoad::pageLoadedAsOffStaysEnabledUntilAnItemChanges()
{
    for (const char *key : {"Image/Image", "Fonts/Fonts", "Secur/Secur", "Annot/Annot"})
        m_sandbox->store(key, "No");
    const ShownOptions shown;
    const auto *pages = shown.window.find<QStackedWidget>("stackedWidget_option");
    for (int page = 0; page < pageCount; ++page) {
        QVERIFY(!shown.window.isPageOn(page));
        QVERIFY(pages->widget(page)->isEnabled());
    }
    shown.window.switchPage(fontsPage, true);
    for (int page = 0; page < pageCount; ++page)
        QCOMPARE(pages->widget(page)->isEnabled(), page == fontsPage);
}

void TestOpDialogLoad::readsTheFileOnce()
{
    m_sandbox->store("Image/ColorRes", "72");
    ShownOptions shown;
    shown.dialog.close();
    m_sandbox->store("Image/ColorRes", "96");
    shown.dialog.show();
    QCOMPARE(shown.window.value("lineEdit_clr_res"), QString("72"));
}

void TestOpDialogLoad::loadingAgainHidesAndShows()
{
    ShownOptions shown;
    for (const char *stored : {"0", "0", "2"}) {
        m_sandbox->store("Image/MonoType", stored);
        QVERIFY(QMetaObject::invokeMethod(&shown.dialog, "setallowshow"));
        for (const QString &name : trioOf("comboBox__mno_down_type"))
            QCOMPARE(shown.window.isShown(name), *stored != '0');
    }
}

QTEST_MAIN(TestOpDialogLoad)
#include "tst_opdialogload.moc"
