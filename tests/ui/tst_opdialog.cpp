// The options dialog as it comes up.

#include "opdialogtest.h"

#include <QApplication>
#include <QListWidget>
#include <QMetaMethod>
#include <QStackedWidget>
#include <QTest>

class TestOpDialog : public OpDialogTest
{
    Q_OBJECT

private slots:
    void slotsInOrder();
    void pageItems();
    void opensOnTheImagePage();
    void background();
    void textsAreDarkOnADarkDesktop();
    void fixedSize();
};

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
    const ShownOptions shown;
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
    const ShownOptions shown;
    QCOMPARE(shown.window.find<QListWidget>("listWidge_option")->currentRow(), 0);
    QCOMPARE(shown.window.find<QStackedWidget>("stackedWidget_option")->currentIndex(), 0);
}

void TestOpDialog::background()
{
    const ShownOptions shown;
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
        const ShownOptions shown;
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
    ShownOptions shown;
    shown.dialog.resize(800, 600);
    QCOMPARE(shown.dialog.size(), QSize(588, 393));
    QCOMPARE(shown.dialog.minimumSize(), QSize(588, 393));
    QCOMPARE(shown.dialog.maximumSize(), QSize(588, 393));
}

QTEST_MAIN(TestOpDialog)
#include "tst_opdialog.moc"
