#include "modal.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QMessageBox>
#include <QPushButton>

NextModal::NextModal(Handler handler)
    : m_handler(std::move(handler))
{
    qApp->installEventFilter(this);
}

NextModal::~NextModal()
{
    qApp->removeEventFilter(this);
}

bool NextModal::eventFilter(QObject *watched, QEvent *event)
{
    auto *dialog = qobject_cast<QDialog *>(watched);
    if (!m_shown && dialog && event->type() == QEvent::Show) {
        m_shown = true;
        QMetaObject::invokeMethod(
            this, [this, dialog] { m_handler(*dialog); }, Qt::QueuedConnection);
    }
    return false;
}

NextMessageBox::NextMessageBox()
    : NextModal([this](QWidget &window) { read(window); })
{
}

void NextMessageBox::read(QWidget &window)
{
    auto *box = qobject_cast<QMessageBox *>(&window);
    if (!box)
        qFatal("not a message box: %s", window.metaObject()->className());
    title = box->windowTitle();
    text = box->text();
    icon = box->icon();
    buttons = box->standardButtons();
    parentWindow = box->parentWidget();
    box->button(QMessageBox::Ok)->click();
}
