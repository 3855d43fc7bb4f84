// Measures the window from inside; script/bench puts the figures side by side.
//
//     bench start corvane|text|blank  shows a window and ends with its first paint: the program's,
//                                     one with a line of text, and one without
//     bench switches                  prints the engine switches
//     bench batch OUTPUT FILE...      runs a batch; prints its wall time in ms
//     bench add COUNT FOLDER          lists COUNT files of its own in the window, and in a bare
//     table;
//                                     prints "window bare stat" in ms, a line per round; stat is
//                                     what asking for the sizes costs by itself

#include "src/process.h"
#include "support/dragdrop.h"
#include "support/sandbox.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTextStream>

#include <memory>

namespace {

constexpr int patience = 30 * 60 * 1000; // ms
constexpr int rounds = 7;

class EndWithFirstPaint : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        return false;
    }
};

void usePluginsBesideTheProgram()
{
    QCoreApplication::setLibraryPaths(
        {QDir(QCoreApplication::applicationDirPath() + "/../../Plugins").canonicalPath()});
}

int start(const QString &which)
{
    if (which == "corvane")
        usePluginsBesideTheProgram();
    const std::unique_ptr<QWidget> window(which == "corvane" ? new Process
                                          : which == "text"  ? new QLabel("one line of text")
                                                             : new QWidget);
    EndWithFirstPaint end;
    window->installEventFilter(&end);
    window->show();
    return QApplication::exec();
}

QList<QUrl> urls(const QStringList &files)
{
    QList<QUrl> all;
    for (const QString &file : files)
        all.append(QUrl::fromLocalFile(file));
    return all;
}

int batch(const QString &output, const QStringList &files)
{
    Process window;
    window.show();
    dropUrls(window, urls(files));
    window.findChild<QLineEdit *>("outputfolderEdit")->setText(output);
    const auto *progress = window.findChild<QProgressBar *>("progressBar");
    QElapsedTimer timer;
    timer.start();
    QTest::mouseClick(window.findChild<QPushButton *>("runButton"), Qt::LeftButton);
    // Not qWaitFor(), which looks only every 10 ms.
    while (progress->value() != 0 && timer.elapsed() < patience)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QTextStream(stdout) << timer.elapsed() << '\n';
    return progress->value() == 0 ? 0 : 1;
}

// The least a list of files can cost: their paths in a table like the window's, nothing else.
qint64 bareFill(const QStringList &files)
{
    QTableWidget table(0, 3);
    table.show();
    QCoreApplication::processEvents(); // the first paint is measured elsewhere
    QElapsedTimer timer;
    timer.start();
    for (const QString &file : files) {
        const int row = table.rowCount();
        table.insertRow(row);
        table.setItem(row, 0, new QTableWidgetItem(file));
    }
    QCoreApplication::processEvents();
    return timer.nsecsElapsed();
}

qint64 windowFill(const QStringList &files)
{
    Process window;
    window.show();
    const QList<QUrl> dropped = urls(files);
    QCoreApplication::processEvents();
    QElapsedTimer timer;
    timer.start();
    dropUrls(window, dropped);
    QCoreApplication::processEvents();
    return timer.nsecsElapsed();
}

qint64 askForSizes(const QStringList &files)
{
    QElapsedTimer timer;
    timer.start();
    qint64 sum = 0;
    for (const QString &file : files)
        sum += QFileInfo(file).size();
    return sum > 0 ? timer.nsecsElapsed() : 0;
}

int add(int count, const QString &folder)
{
    QStringList files;
    for (int i = 0; i < count; ++i) {
        files.append(QString("%1/%2.pdf").arg(folder).arg(i));
        writeZeros(files.last(), 1000 + i);
    }
    QTextStream out(stdout);
    for (int round = 0; round < rounds; ++round)
        out << double(windowFill(files)) / 1e6 << ' ' << double(bareFill(files)) / 1e6 << ' '
            << double(askForSizes(files)) / 1e6 << '\n';
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const Sandbox sandbox; // options that the user has applied stay out of it
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    const QString what = arguments.value(0);
    if (what == "start")
        return start(arguments.value(1));
    if (what == "switches") {
        QTextStream(stdout) << Process().getOption() << '\n';
        return 0;
    }
    if (what == "batch")
        return batch(arguments.value(1), arguments.mid(2));
    if (what == "add")
        return add(arguments.value(1).toInt(), arguments.value(2));
    QTextStream(stderr) << "see the head of bench.cpp\n";
    return 2;
}
