#pragma once

#include "verdicts.h"

#include <QString>
#include <QStringList>
#include <QTest>
#include <QWidget>

class QLineEdit;
class QProgressBar;
class QTableWidget;

/// Works the main window as a user does, and reads what it shows. Widgets go by their object names.
class WindowUser
{
public:
    /// The columns of the file table.
    enum Column {
        path,
        size,
        result,
    };
    explicit WindowUser(QWidget &window)
        : m_window(window)
    {
    }

    template <typename Widget>
    Widget *find(const char *name) const
    {
        return m_window.findChild<Widget *>(name);
    }
    QTableWidget *table() const;
    QProgressBar *progressBar() const;
    QLineEdit *folderEdit() const;

    void press(const char *button) const;

    /// Adds files of one folder by the button and the file dialog.
    void add(const QStringList &paths) const;
    /// Drops files so that they are listed in this order.
    void drop(const QStringList &paths) const;
    void clickHeader(Column column, int clicks = 1) const;

    /// Selects these rows, and no others, and presses the button that removes them.
    void remove(const QList<int> &rows) const;

    QString cell(int row, Column column) const;
    QString verdict(int row) const { return cell(row, result); }
    QStringList verdicts() const;
    /// The verdict on the file of that name, without its folder.
    QString verdictOf(const QString &name) const;
    /// The listed files, without their folders.
    QStringList names() const;
    QList<int> selectedRows() const;

    void run() const { press("runButton"); }
    bool isIdle() const;
    void awaitEnd() const;
    void runToTheEnd() const;
    /// Clears the list and compresses these files; the verdicts in their order.
    QStringList compress(const QStringList &paths, const QString &outputFolder) const;

private:
    QStringList texts(Column column) const;

    QWidget &m_window;
};
