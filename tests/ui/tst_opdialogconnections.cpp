// The connections that the options dialog is to have, those without an effect among them.

#include "opdialogtest.h"
#include "support/connections.h"
#include "support/options.h"

#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <iterator>
#include <memory>
#include <vector>

namespace {

// The 25 options that are no pages.
QList<Option> customOptions()
{
    QList<Option> custom;
    std::ranges::copy_if(allOptions(), std::back_inserter(custom),
                         [](const Option &option) { return option.kind != Option::page; });
    return custom;
}

} // namespace

class TestOpDialogConnections : public ShownOpDialogTest
{
    Q_OBJECT

private slots:
    void connections_data();
    void connections();
    void customConnections_data();
    void customConnections();
    void customConnectionsAreCutWhileLoading();
    void customConnectionsStayDuringReset();
    void emptySlotsDoNothing_data();
    void emptySlotsDoNothing();
};

void TestOpDialogConnections::connections_data()
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
void TestOpDialogConnections::connections()
{
    QFETCH(QString, sender);
    QFETCH(QByteArray, signal);
    QFETCH(QString, receiver);
    QFETCH(QByteArray, slot);
    const auto *from = m_window->find<QObject>(sender);
    const QObject *to = receiver == "OpDialog" ? m_dialog.get() : m_window->find<QObject>(receiver);
    const int before = connectionCount(from, signal);
    QVERIFY(QObject::disconnect(from, signal, to, slot));
    QCOMPARE(connectionCount(from, signal), before - 1);
}

void TestOpDialogConnections::customConnections_data()
{
    QTest::addColumn<QByteArray>("signal");
    for (const Option &option : customOptions())
        QTest::newRow(option.control) << QByteArray(option.signal());
    QCOMPARE(customOptions().size(), qsizetype(25));
}

void TestOpDialogConnections::customConnections()
{
    QFETCH(QByteArray, signal);
    const auto *control = find<QObject>(QTest::currentDataTag());
    const auto count = [&] { return connectionCount(control, signal); };
    const int made = count();
    QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), "allCustomDisconnection"));
    QCOMPARE(count(), made - 1);
    QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), "allCustomConnection"));
    QCOMPARE(count(), made);
    QVERIFY(QObject::disconnect(control, signal, m_dialog.get(), SLOT(linkCustomSetting())));
    QCOMPARE(count(), made - 1);
}

// Loading changes every control here; each looks at all connections when it changes.
void TestOpDialogConnections::customConnectionsAreCutWhileLoading()
{
    const auto counts = [this] {
        QList<int> list;
        for (const Option &option : customOptions())
            list.append(connectionCount(find<QObject>(option.control), option.signal()));
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
void TestOpDialogConnections::customConnectionsStayDuringReset()
{
    // With a password the check box for PDF/A is out of reach, so the passwords come last.
    QList<Option> options = customOptions();
    std::stable_partition(options.begin(), options.end(), [](const Option &option) {
        return !QString(option.control).endsWith("password");
    });
    for (const Option &option : options)
        m_window->set(option.control, option.other());
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    for (const Option &option : options)
        spies.push_back(
            std::make_unique<QSignalSpy>(find<QObject>(option.control), option.signal()));
    const auto *title = find<QLineEdit>("lineEdit_title");
    const int before = connectionCount(title, SIGNAL(textChanged(QString)));
    int during = 0;
    const auto watch = connect(title, &QLineEdit::textChanged, this, [&] {
        during = connectionCount(title, SIGNAL(textChanged(QString)));
    });
    m_window->press("pushButton_reset");
    QCOMPARE(during, before + 1); // and this watch
    disconnect(watch);
    for (std::size_t index = 0; index < spies.size(); ++index)
        QVERIFY2(!spies[index]->isEmpty(), options[qsizetype(index)].control);
}

void TestOpDialogConnections::emptySlotsDoNothing_data()
{
    QTest::addColumn<QByteArray>("slot");
    for (const char *slot : {"changeStackedDisplay", "linkCustomSetting", "InitialTablewidget"})
        QTest::newRow(slot) << QByteArray(slot);
}

void TestOpDialogConnections::emptySlotsDoNothing()
{
    QFETCH(QByteArray, slot);
    const QImage before = m_dialog->grab().toImage();
    QVERIFY(QMetaObject::invokeMethod(m_dialog.get(), slot));
    QCOMPARE(m_dialog->grab().toImage(), before);
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
}

QTEST_MAIN(TestOpDialogConnections)
#include "tst_opdialogconnections.moc"
