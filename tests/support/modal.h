#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QWidget;

/// Waits for the next modal window, and handles it once it is on the screen: a static QMessageBox
/// or QFileDialog call returns to the test only when somebody closes its window.
class NextModal : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(QWidget &window)>;

    /// The handler must close the window.
    explicit NextModal(Handler handler);
    ~NextModal() override;

    bool wasShown() const { return m_shown; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Handler m_handler;
    bool m_shown = false;
};

/// What a message box said, and its closing by the Ok button.
class NextMessageBox : public NextModal
{
    Q_OBJECT

public:
    NextMessageBox();

    QString title;
    QString text;
    int icon = -1;    ///< QMessageBox::Icon
    int buttons = -1; ///< QMessageBox::StandardButtons
    QPointer<QWidget> parentWindow;

private:
    void read(QWidget &window);
};
