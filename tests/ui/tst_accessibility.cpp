// Every control of every window has a name that a screen reader can say, and can be reached and
// worked without a mouse.

#include "src/aboutdialog.h"
#include "src/opdialog.h"
#include "src/process.h"
#include "support/sandbox.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTest>

#include <memory>

namespace {

// What the form made, without the parts that Qt's widgets make for themselves.
QList<QWidget *> controls(const QWidget &window)
{
    QList<QWidget *> all;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        const bool control =
            qobject_cast<QAbstractButton *>(widget) || qobject_cast<QComboBox *>(widget) ||
            qobject_cast<QLineEdit *>(widget) || qobject_cast<QListWidget *>(widget) ||
            qobject_cast<QTableWidget *>(widget) || qobject_cast<QProgressBar *>(widget);
        const bool ofTheForm =
            !widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_");
        if (control && ofTheForm)
            all.append(widget);
    }
    return all;
}

// What a screen reader says. Under Linux the name of a combo box is its current item, and its
// caption is the label that points to it.
QString spokenName(QWidget *widget)
{
    const QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(widget);
    if (!interface)
        return {};
    if (!qobject_cast<const QComboBox *>(widget))
        return interface->text(QAccessible::Name);
    const auto labels = interface->relations(QAccessible::Label);
    if (labels.isEmpty())
        return {};
    const QString group =
        QAccessible::queryAccessibleInterface(widget->parentWidget())->text(QAccessible::Name);
    return group + ": " + labels.constFirst().first->text(QAccessible::Name);
}

// Tab from control to control until one comes again.
QSet<const QWidget *> reachedByTab(QWidget &window)
{
    window.activateWindow();
    window.setFocus();
    QSet<const QWidget *> reached;
    for (;;) {
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : &window,
                        Qt::Key_Tab);
        const QWidget *focus = QApplication::focusWidget();
        if (!focus || reached.contains(focus))
            return reached;
        reached.insert(focus);
    }
}

} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyControlHasAName_data();
    void everyControlHasAName();
    void namesTellControlsApart_data();
    void namesTellControlsApart();
    void spokenNames_data();
    void spokenNames();
    void iconButtonsHaveToolTips();
    void mainWindowByKeyboard();
    void optionsByKeyboard_data();
    void optionsByKeyboard();
    void aboutBoxClosesByKeyboard();

private:
    QWidget *window(const QString &name) const;

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<Process> m_process;
    std::unique_ptr<OpDialog> m_options;
    std::unique_ptr<AboutDialog> m_about;
};

void TestAccessibility::init()
{
    m_sandbox = std::make_unique<Sandbox>();
    m_process = std::make_unique<Process>();
    m_options = std::make_unique<OpDialog>(nullptr);
    m_about = std::make_unique<AboutDialog>(nullptr);
}

void TestAccessibility::cleanup()
{
    m_about.reset();
    m_options.reset();
    m_process.reset();
    m_sandbox.reset();
}

QWidget *TestAccessibility::window(const QString &name) const
{
    for (QWidget *candidate :
         {static_cast<QWidget *>(m_process.get()), static_cast<QWidget *>(m_options.get()),
          static_cast<QWidget *>(m_about.get())}) {
        if (candidate->objectName() == name)
            return candidate;
    }
    return nullptr;
}

void TestAccessibility::everyControlHasAName_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("process") << 10;
    QTest::newRow("OpDialog") << 29;
    QTest::newRow("AboutDialog") << 0;
}

void TestAccessibility::everyControlHasAName()
{
    QFETCH(int, count);
    const QList<QWidget *> all = controls(*window(QTest::currentDataTag()));
    QCOMPARE(all.size(), count);
    for (QWidget *control : all)
        QVERIFY2(!spokenName(control).trimmed().isEmpty(), qPrintable(control->objectName()));
}

void TestAccessibility::namesTellControlsApart_data()
{
    everyControlHasAName_data();
}

void TestAccessibility::namesTellControlsApart()
{
    QHash<QString, QString> owner;
    for (QWidget *control : controls(*window(QTest::currentDataTag()))) {
        const QString name = spokenName(control);
        QVERIFY2(!owner.contains(name),
                 qPrintable(name + ": " + owner.value(name) + ", " + control->objectName()));
        owner.insert(name, control->objectName());
    }
}

void TestAccessibility::spokenNames_data()
{
    QTest::addColumn<QString>("window");
    QTest::addColumn<QString>("name");

    const auto row = [](const char *control, const char *window, const char *name) {
        QTest::newRow(control) << window << name;
    };
    row("progressBar", "process", "Progress");
    row("aboutButton", "process", "About");
    row("runButton", "process", "Compress");
    row("inputfiletableWidget", "process", "File List");
    row("outputfolderEdit", "process", "Output Folder");
    row("outputButton", "process", "Choose the output folder");
    row("pushButton_option", "process", "Options");
    row("listWidge_option", "OpDialog", "Pages");
    row("comboBox_clr_down_type", "OpDialog", "Color Image: Downsample Type");
    row("comboBox_gry_down_type", "OpDialog", "Gray Image: Downsample Type");
    row("comboBox__mno_down_type", "OpDialog", "Mono Image: Downsample Type");
    row("comboBox_clr_compress", "OpDialog", "Color Image: Compress Mode");
    row("comboBox_gry_compress", "OpDialog", "Gray Image: Compress Mode");
    row("comboBox_mno_compress", "OpDialog", "Mono Image: Compress Mode");
    row("lineEdit_clr_res", "OpDialog", "Color Image: Downsample Resolution in dpi");
    row("lineEdit__gry_res", "OpDialog", "Gray Image: Downsample Resolution in dpi");
    row("lineEdit_mno_res", "OpDialog", "Mono Image: Downsample Resolution in dpi");
    row("lineEdit_userpassword", "OpDialog", "User Password");
    row("lineEdit_ownerpassword", "OpDialog", "Owner Password");
    row("lineEdit_title", "OpDialog", "Title");
    row("lineEdit_author", "OpDialog", "Author");
    row("lineEdit_subject", "OpDialog", "Subject");
    row("lineEdit_keywords", "OpDialog", "Keywords");
    row("lineEdit_creator", "OpDialog", "Creator");
    row("lineEdit_producer", "OpDialog", "Producer");
}

void TestAccessibility::spokenNames()
{
    QFETCH(QString, window);
    QFETCH(QString, name);
    auto *control = this->window(window)->findChild<QWidget *>(QTest::currentDataTag());
    QCOMPARE(spokenName(control), name);
    if (qobject_cast<QComboBox *>(control)) // elsewhere than under Linux
        QCOMPARE(control->accessibleName(), name);
}

void TestAccessibility::iconButtonsHaveToolTips()
{
    for (const char *name : {"aboutButton", "runButton", "outputButton", "pushButton_option"})
        QVERIFY2(!m_process->findChild<QPushButton *>(name)->toolTip().isEmpty(), name);
}

void TestAccessibility::mainWindowByKeyboard()
{
    m_process->show();
    QVERIFY(QTest::qWaitForWindowActive(m_process.get()));
    const QSet<const QWidget *> reached = reachedByTab(*m_process);
    for (const QWidget *control : controls(*m_process)) {
        if (!qobject_cast<const QProgressBar *>(control))
            QVERIFY2(reached.contains(control), qPrintable(control->objectName()));
    }
}

void TestAccessibility::optionsByKeyboard_data()
{
    QTest::addColumn<int>("page");
    for (int page = 0; page < 4; ++page)
        QTest::addRow("page %d", page) << page;
}

// The page is chosen by keyboard too: the list's arrow keys.
void TestAccessibility::optionsByKeyboard()
{
    QFETCH(int, page);
    m_options->show();
    QVERIFY(QTest::qWaitForWindowActive(m_options.get()));
    auto *list = m_options->findChild<QListWidget *>("listWidge_option");
    list->setFocus();
    for (int row = 0; row < page; ++row)
        QTest::keyClick(list, Qt::Key_Down);
    const auto *pages = m_options->findChild<QStackedWidget *>("stackedWidget_option");
    QCOMPARE(pages->currentIndex(), page);
    const QSet<const QWidget *> reached = reachedByTab(*m_options);
    for (const QWidget *control : controls(*m_options)) {
        if (control->isVisible())
            QVERIFY2(reached.contains(control), qPrintable(control->objectName()));
    }
}

void TestAccessibility::aboutBoxClosesByKeyboard()
{
    m_about->show();
    QTest::keyClick(m_about.get(), Qt::Key_Escape);
    QVERIFY(m_about->isHidden());
}

QTEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
