#include "dragdrop.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

DropResult dragAndDrop(QWidget &window, const QMimeData &data)
{
    const QPoint place = window.rect().center();
    const Qt::DropActions possible = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    QDragEnterEvent enter(place, possible, &data, Qt::LeftButton, Qt::NoModifier);
    enter.setDropAction(Qt::MoveAction);
    enter.ignore();
    QApplication::sendEvent(&window, &enter);
    if (!enter.isAccepted())
        return {};
    QDragMoveEvent move(place, possible, &data, Qt::LeftButton, Qt::NoModifier);
    move.setDropAction(Qt::MoveAction);
    move.accept(); // as the window was entered
    QApplication::sendEvent(&window, &move);
    QDropEvent drop(place, possible, &data, Qt::LeftButton, Qt::NoModifier);
    drop.setDropAction(Qt::MoveAction);
    drop.ignore();
    QApplication::sendEvent(&window, &drop);
    return {true, drop.isAccepted(), drop.dropAction(), move.dropAction()};
}

DropResult dropUrls(QWidget &window, const QList<QUrl> &urls)
{
    QMimeData data;
    data.setUrls(urls);
    return dragAndDrop(window, data);
}
