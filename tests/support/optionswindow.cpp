#include "optionswindow.h"

#include "modal.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>

namespace {

// Test keys carry one Latin-1 letter each; an input method brings all others.
void enterText(QWidget *widget, const QString &text)
{
    QInputMethodEvent event;
    event.setCommitString(text);
    QCoreApplication::sendEvent(widget, &event);
}

const QStringList pages = {"Image", "Fonts", "Security", "Description"};

} // namespace

OptionsWindow::OptionsWindow(QDialog &dialog)
    : m_dialog(dialog)
{
    m_dialog.show();
    if (!QTest::qWaitForWindowActive(&m_dialog))
        qFatal("the dialog doesn't become active");
}

void OptionsWindow::turnTo(int page) const
{
    auto *list = find<QListWidget>("listWidge_option");
    // Right of the check mark.
    const QRect row = list->visualItemRect(list->item(page));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row.center());
}

void OptionsWindow::switchPage(int page, bool on) const
{
    turnTo(page);
    if (isPageOn(page) != on)
        QTest::keyClick(find<QListWidget>("listWidge_option"), Qt::Key_Space);
}

bool OptionsWindow::isPageOn(int page) const
{
    return find<QListWidget>("listWidge_option")->item(page)->checkState() == Qt::Checked;
}

void OptionsWindow::turnToPageOf(const QWidget *control) const
{
    const auto *stack = find<QStackedWidget>("stackedWidget_option");
    for (int page = 0; page < stack->count(); ++page) {
        if (stack->widget(page)->isAncestorOf(control))
            turnTo(page);
    }
    if (!control->isVisible() || !control->isEnabled())
        qFatal("%s can't be used", qPrintable(control->objectName()));
}

void OptionsWindow::choose(const QString &comboBox, int index) const
{
    auto *combo = find<QComboBox>(comboBox);
    turnToPageOf(combo);
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Home);
    for (int step = 0; step < index; ++step)
        QTest::keyClick(combo, Qt::Key_Down);
}

void OptionsWindow::check(const QString &checkBox, bool on) const
{
    auto *box = find<QCheckBox>(checkBox);
    turnToPageOf(box);
    if (box->isChecked() != on)
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
}

void OptionsWindow::type(const QString &lineEdit, const QString &text) const
{
    auto *edit = find<QLineEdit>(lineEdit);
    turnToPageOf(edit);
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    enterText(edit, text);
    QTest::keyClick(edit, Qt::Key_Tab);
}

void OptionsWindow::press(const QString &button) const
{
    QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton);
}

bool OptionsWindow::isShown(const QString &name) const
{
    return !find<QWidget>(name)->isHidden();
}

QString OptionsWindow::value(const QString &option) const
{
    const auto flag = [](bool on) { return QString(on ? "Ok" : "No"); };
    if (pages.contains(option))
        return flag(isPageOn(static_cast<int>(pages.indexOf(option))));
    if (option.startsWith("comboBox"))
        return QString::number(find<QComboBox>(option)->currentIndex());
    if (option.startsWith("checkBox"))
        return flag(find<QCheckBox>(option)->isChecked());
    return find<QLineEdit>(option)->text();
}

void OptionsWindow::set(const QString &option, const QString &value) const
{
    if (pages.contains(option))
        switchPage(static_cast<int>(pages.indexOf(option)), value == "Ok");
    else if (option.startsWith("comboBox"))
        choose(option, value.toInt());
    else if (option.startsWith("checkBox"))
        check(option, value == "Ok");
    else
        type(option, value);
}

void withOptions(QWidget &mainWindow, const std::function<void(const OptionsWindow &)> &use)
{
    NextModal options([&](QWidget &window) {
        auto *dialog = qobject_cast<QDialog *>(&window);
        use(OptionsWindow(*dialog));
        if (dialog->isVisible())
            qFatal("the options are still open");
    });
    mainWindow.findChild<QPushButton *>("pushButton_option")->click();
    if (!options.wasShown())
        qFatal("the options did not open");
}

void applyOptions(QWidget &mainWindow, const QMap<QString, QString> &values)
{
    withOptions(mainWindow, [&](const OptionsWindow &window) {
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            window.set(value.key(), value.value());
        window.press("pushButton_apply");
    });
}
