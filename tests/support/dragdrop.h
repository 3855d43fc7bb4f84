#pragma once

#include <QList>
#include <QUrl>

class QMimeData;
class QWidget;

/// What came of a drag that ended over a window.
struct DropResult
{
    bool entered = false;  ///< the window took the drag
    bool accepted = false; ///< and the drop
    Qt::DropAction action = Qt::IgnoreAction;
    Qt::DropAction announced = Qt::IgnoreAction; ///< what it said before that it would do
};

/// Drags data over the middle of a window and drops it there; the source proposes a move.
DropResult dragAndDrop(QWidget &window, const QMimeData &data);

/// The same with URLs, as a file manager does.
DropResult dropUrls(QWidget &window, const QList<QUrl> &urls);
