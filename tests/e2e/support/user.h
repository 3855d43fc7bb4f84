#pragma once

#include "desktop.h"
#include "form.h"

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

/// Somebody who works with the program on a desktop. Every call waits until the program is ready
/// for it, and ends the test if it doesn't get ready.
class User
{
public:
    explicit User(const Desktop &desktop);

    /// The program; its standard error is forwarded.
    QProcess program;

    /// Starts it and waits for its window. The working folder is the user's home.
    void start(const QString &path, const QStringList &arguments = {});

    /// Whether the program shows a window of that title, ready for input.
    bool sees(const QString &title) const { return window(title).active; }
    DesktopWindow window(const QString &title) const;
    /// The same once it is ready for input.
    DesktopWindow awaitWindow(const QString &title) const;
    /// Waits until no window of that title is shown.
    void awaitEndOf(const QString &title) const;

    /// Clicks on the middle of a widget, which must be in reach.
    void clickMain(const QString &widget) const;
    void clickOption(const QString &widget) const;
    /// Turns the wheel over a widget of the options.
    void wheelOption(const QString &widget, int notches) const;
    /// Replaces the text of a field of the options.
    void typeOption(const QString &lineEdit, const QString &text) const;

    /// Turns to a page of the options, and leaves the focus in the list of pages.
    void turnToOptionPage(int page) const;

    void pressKey(xcb_keysym_t key, int times = 1) const;
    void type(const QString &text) const { m_desktop.type(text); }
    /// What Ctrl+C takes; empty if that is nothing.
    QString copied() const;

    /// Takes the main window by its title bar, to bring it to the front or to move it.
    void activate() const;
    void moveWindow(const QPoint &distance) const;

    /// Drags files from another program's window onto the main window; what came of it.
    QString drop(const QStringList &files) const;
    /// Types a path into the file dialog of that title, and accepts.
    void choose(const QString &title, const QString &path) const;
    /// Adds a file by the dialog, which becomes the given row.
    void addFile(const QString &path, int row) const;
    void chooseFolder(const QString &path) const;
    void run() const { clickMain("runButton"); }

    /// The text of a cell as copying it tells; empty if there is nothing to copy.
    QString cell(int row, int column) const;
    QStringList verdicts(int rows) const;
    /// The text in the field of the output folder.
    QString folder() const;

    /// How many pixels of the progress bar are green.
    int progressSeen() const;
    QImage mainPicture() const;

    /// Whether a verdict is shown in a row; the table must not be scrolled.
    bool resultSeen(int row) const;
    /// Waits until the last row has its verdict and the bar is empty again.
    void awaitEndOfBatch(int rows) const;

    /// Closes the active window as the keyboard does.
    void closeWindow() const;
    /// Closes the main window; the program's exit code, -1 after a crash.
    int quit();

    /// Waits until the program has an engine that stands still, and gives its number.
    qint64 awaitHeldEngine() const;
    /// Lets it go on.
    void resumeEngine() const;

    QString home(const QString &name = {}) const;

private:
    QProcessEnvironment environment() const;
    void enterTable() const;
    QPoint titleBar() const;
    QRect cellRect(int row, int column) const;
    bool showsText(const QRect &place) const;

    const Desktop &m_desktop;
    QTemporaryDir m_home;
    Form m_mainForm;
    Form m_optionsForm;
};

/// The processes that a process has started and that are still there, zombies included.
QList<qint64> childrenOf(qint64 process);
/// The state letter of a process: R, S, D, T, Z; 0 if there is none.
char stateOf(qint64 process);
