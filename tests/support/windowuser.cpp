#include "windowuser.h"

#include "bound.h"
#include "dragdrop.h"
#include "modal.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>

#include <algorithm>

QTableWidget *WindowUser::table() const
{
    return find<QTableWidget>("inputfiletableWidget");
}

QProgressBar *WindowUser::progressBar() const
{
    return find<QProgressBar>("progressBar");
}

QLineEdit *WindowUser::folderEdit() const
{
    return find<QLineEdit>("outputfolderEdit");
}

void WindowUser::press(const char *button) const
{
    QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton);
}

void WindowUser::add(const QStringList &paths) const
{
    const NextModal dialog([&paths](QWidget &window) {
        auto &files = dynamic_cast<QFileDialog &>(window);
        files.setDirectory(QFileInfo(paths.constFirst()).path());
        QStringList quoted;
        for (const QString &file : paths)
            quoted.append('"' + QFileInfo(file).fileName() + '"');
        files.findChild<QLineEdit *>("fileNameEdit")->setText(quoted.join(' '));
        QMetaObject::invokeMethod(&files, "accept");
    });
    press("openfileButton");
    QVERIFY(dialog.wasShown());
}

// A drop puts each file above the one before it.
void WindowUser::drop(const QStringList &paths) const
{
    QList<QUrl> urls;
    for (const QString &file : paths)
        urls.prepend(QUrl::fromLocalFile(file));
    dropUrls(m_window, urls);
}

void WindowUser::clickHeader(Column column, int clicks) const
{
    const QHeaderView *header = table()->horizontalHeader();
    for (int click = 0; click < clicks; ++click) {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                          {header->sectionViewportPosition(column) + 20, header->height() / 2});
    }
    QCOMPARE(header->sortIndicatorSection(), int(column));
}

void WindowUser::remove(const QList<int> &rows) const
{
    table()->clearSelection();
    for (const int row : rows)
        table()->setRangeSelected({row, path, row, result}, true);
    press("removeButton");
}

QString WindowUser::cell(int row, Column column) const
{
    const QTableWidgetItem *item = table()->item(row, column);
    return item ? item->text() : QString(none);
}

QStringList WindowUser::texts(Column column) const
{
    QStringList all;
    for (int row = 0; row < table()->rowCount(); ++row)
        all.append(cell(row, column));
    return all;
}

QStringList WindowUser::verdicts() const
{
    return texts(result);
}

QString WindowUser::verdictOf(const QString &name) const
{
    const qsizetype row = names().indexOf(name);
    return row < 0 ? QString("(not listed)") : verdict(static_cast<int>(row));
}

QStringList WindowUser::names() const
{
    QStringList all = texts(path);
    std::ranges::transform(all, all.begin(),
                           [](const QString &text) { return QFileInfo(text).fileName(); });
    return all;
}

QList<int> WindowUser::selectedRows() const
{
    QList<int> rows;
    for (const QModelIndex &index : table()->selectionModel()->selectedRows())
        rows.append(index.row());
    std::ranges::sort(rows);
    return rows;
}

bool WindowUser::isIdle() const
{
    return progressBar()->value() == 0;
}

void WindowUser::awaitEnd() const
{
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
}

void WindowUser::runToTheEnd() const
{
    run();
    awaitEnd();
}

QStringList WindowUser::compress(const QStringList &paths, const QString &outputFolder) const
{
    press("removeallButton");
    drop(paths);
    folderEdit()->setText(outputFolder);
    runToTheEnd();
    return verdicts();
}
