#pragma once

#include <QDialog>
#include <QMap>
#include <QString>

#include <functional>

/// Works the options dialog as a user does: with keys and clicks, by object name. Every call first
/// turns to the page of the control. The dialog must be on the screen.
class OptionsWindow
{
public:
    /// Shows the dialog and waits until it is active.
    explicit OptionsWindow(QDialog &dialog);

    template <typename Widget>
    Widget *find(const QString &name) const
    {
        auto *widget = m_dialog.findChild<Widget *>(name);
        if (!widget)
            qFatal("no %s", qPrintable(name));
        return widget;
    }

    /// Turns to a page: 0 image, 1 fonts, 2 security, 3 description.
    void turnTo(int page) const;
    /// Sets the check mark of a page's item.
    void switchPage(int page, bool on) const;
    bool isPageOn(int page) const;

    void choose(const QString &comboBox, int index) const;
    void check(const QString &checkBox, bool on) const;
    /// Replaces a field's text and leaves the field.
    void type(const QString &lineEdit, const QString &text) const;
    void press(const QString &button) const;

    /// What an option is, as it is stored: "Ok" or "No", an index, or a text. Options go by the
    /// names of their controls; the pages by "Image", "Fonts", "Security" and "Description".
    QString value(const QString &option) const;
    /// Works an option until it has the value.
    void set(const QString &option, const QString &value) const;

    /// True if the control itself isn't hidden; its page may be.
    bool isShown(const QString &name) const;

private:
    void turnToPageOf(const QWidget *control) const;

    QDialog &m_dialog;
};

/// Presses the options button of the main window, and hands the dialog over, which must be closed
/// on return.
void withOptions(QWidget &mainWindow, const std::function<void(const OptionsWindow &)> &use);

/// Sets these options, by the names of their controls, and presses Apply.
void applyOptions(QWidget &mainWindow, const QMap<QString, QString> &values);
