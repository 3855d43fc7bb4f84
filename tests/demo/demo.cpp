// Does the main job with the real window and the real engine, and tells what came of it:
//
//     demo OUTPUT_FOLDER SCREENSHOT FILE...
//
// Prints a table and ends with 1 if a file did not succeed.

#include "src/process.h"
#include "support/dragdrop.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

namespace {

constexpr int patience = 10 * 60 * 1000; // ms; an engine that takes longer has failed the demo

struct Outcome
{
    QString file;
    qint64 before = 0;
    qint64 after = 0;
    QString verdict;
};

QString cell(const QTableWidget &table, int row, int column)
{
    const QTableWidgetItem *item = table.item(row, column);
    return item ? item->text() : QString();
}

QList<Outcome> outcomes(const QTableWidget &table, const QString &outputFolder)
{
    QList<Outcome> all;
    for (int row = 0; row < table.rowCount(); ++row) {
        const QFileInfo input(cell(table, row, 0));
        const QFileInfo output(outputFolder + '/' + input.baseName() + ".pdf");
        all.append({input.fileName(), input.size(), output.size(), cell(table, row, 2)});
    }
    return all;
}

void print(const QList<Outcome> &all)
{
    QTextStream out(stdout);
    out << QString("%1 %2 %3 %4  %5\n")
               .arg("file", -24)
               .arg("before", 10)
               .arg("after", 10)
               .arg("saved", 7)
               .arg("verdict");
    for (const Outcome &one : all) {
        const qint64 saved = one.before > 0 ? 100 - 100 * one.after / one.before : 0;
        out << QString("%1 %2 %3 %4  %5\n")
                   .arg(one.file, -24)
                   .arg(one.before, 10)
                   .arg(one.after, 10)
                   .arg(QString("%1 %").arg(saved), 7)
                   .arg(one.verdict);
    }
}

void drop(Process &window, const QStringList &files)
{
    QList<QUrl> urls;
    for (const QString &file : files)
        urls.append(QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath()));
    dropUrls(window, urls);
}

} // namespace

int main(int argc, char *argv[])
{
    // Options that the user has applied stay out of it.
    const QTemporaryDir ownSettings;
    qputenv("TMPDIR", QFile::encodeName(ownSettings.path()));

    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 4) {
        QTextStream(stderr) << "usage: demo OUTPUT_FOLDER SCREENSHOT FILE...\n";
        return 2;
    }
    const QString outputFolder = QDir(arguments[1]).absolutePath();

    if (!QDir().mkpath(outputFolder))
        return 1;

    Process window;
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        return 1;
    const auto &table = *window.findChild<QTableWidget *>("inputfiletableWidget");
    const auto &progress = *window.findChild<QProgressBar *>("progressBar");
    drop(window, arguments.mid(3));
    QTest::keyClicks(window.findChild<QLineEdit *>("outputfolderEdit"), outputFolder);
    QTest::mouseClick(window.findChild<QPushButton *>("runButton"), Qt::LeftButton);
    const bool ended = QTest::qWaitFor([&progress] { return progress.value() == 0; }, patience);

    const QList<Outcome> all = outcomes(table, outputFolder);
    print(all);
    const bool saved = window.grab().save(arguments[2]);
    const bool good =
        std::ranges::all_of(all, [](const Outcome &one) { return one.verdict == "Succeed"; });
    return ended && saved && good && !all.isEmpty() ? 0 : 1;
}
