// A file manager's stand-in: a window that lets its user drag files.
//
//     dragsource FILE...
//
// Tells on standard output, a word per line: "dragging" once a drag has begun, "welcome" when what
// lies under the pointer would take it, then the action of the drop: "copy", "move" or "none".

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QTextStream>
#include <QUrl>
#include <QWidget>

namespace {

void tell(const char *word)
{
    QTextStream(stdout) << word << Qt::endl;
}

class Source : public QWidget
{
public:
    explicit Source(const QList<QUrl> &urls)
        : m_urls(urls)
    {
        setWindowTitle("Drag source");
        setGeometry(20, 60, 120, 80);
    }

protected:
    void mousePressEvent(QMouseEvent *) override {}
    void mouseMoveEvent(QMouseEvent *) override { drag(); }

private:
    void drag()
    {
        auto *drag = new QDrag(this);
        auto *mime = new QMimeData;
        mime->setUrls(m_urls);
        drag->setMimeData(mime);
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) {
            if (action != Qt::IgnoreAction)
                tell("welcome");
        });
        // The files' names are asked for after exec() has returned; then the drag is deleted.
        connect(drag, &QObject::destroyed, qApp, &QCoreApplication::quit);
        tell("dragging");
        switch (drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction)) {
        case Qt::CopyAction:
            tell("copy");
            break;
        case Qt::MoveAction:
            tell("move");
            break;
        default:
            tell("none");
        }
    }

    QList<QUrl> m_urls;
};

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QList<QUrl> urls;
    for (const QString &file : QCoreApplication::arguments().mid(1))
        urls.append(QUrl::fromLocalFile(file));
    Source source(urls);
    source.show();
    return QApplication::exec();
}
