// The options dialog without a mouse.

#include "opdialogtest.h"
#include "support/options.h"

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>

class TestOpDialogKeyboard : public ShownOpDialogTest
{
    Q_OBJECT

private slots:
    void focusOrder_data();
    void focusOrder();
    void returnApplies();
    void returnOnTheListApplies();
    void returnPressesTheButtonInFocus();
    void escapeClosesLikeCancel();
    void everythingByKeyboard();

private:
    void tabTo(const char *name) const;
};

void TestOpDialogKeyboard::tabTo(const char *name) const
{
    const auto *wanted = find<QWidget>(name);
    for (int step = 0; QApplication::focusWidget() != wanted; ++step) {
        QVERIFY2(step < 40, name);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
}

void TestOpDialogKeyboard::focusOrder_data()
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
void TestOpDialogKeyboard::focusOrder()
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

void TestOpDialogKeyboard::returnApplies()
{
    m_window->turnTo(descriptionPage);
    auto *title = find<QLineEdit>("lineEdit_title");
    title->setFocus();
    QTest::keyClicks(title, "T");
    QTest::keyClick(title, Qt::Key_Return);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_sandbox->stored("Annot/Tit"), QString("T"));
}

void TestOpDialogKeyboard::returnOnTheListApplies()
{
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_sandbox->stored("Image/Image"), QString("Ok"));
}

void TestOpDialogKeyboard::returnPressesTheButtonInFocus()
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

void TestOpDialogKeyboard::escapeClosesLikeCancel()
{
    m_window->type("lineEdit_clr_res", "72");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
    QCOMPARE(find<QLineEdit>("lineEdit_clr_res")->text(), QString("72"));
}

void TestOpDialogKeyboard::everythingByKeyboard()
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

QTEST_MAIN(TestOpDialogKeyboard)
#include "tst_opdialogkeyboard.moc"
