#include "batch.h"

#include "support/bound.h"
#include "support/dragdrop.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <algorithm>

namespace {

QString verdict(const QTableWidget &table, int row)
{
    const QTableWidgetItem *item = table.item(row, 2);
    return item ? item->text() : "(none)";
}

} // namespace

QStringList compress(QWidget &mainWindow, const QStringList &inputs, const QString &outputFolder)
{
    mainWindow.findChild<QPushButton *>("removeallButton")->click();
    // A drop puts each file above the one before it.
    QList<QUrl> urls;
    for (const QString &input : inputs)
        urls.prepend(QUrl::fromLocalFile(input));
    dropUrls(mainWindow, urls);
    mainWindow.findChild<QLineEdit *>("outputfolderEdit")->setText(outputFolder);
    mainWindow.findChild<QPushButton *>("runButton")->click();

    const auto *table = mainWindow.findChild<QTableWidget *>("inputfiletableWidget");
    const int last = static_cast<int>(inputs.size()) - 1;
    if (!QTest::qWaitFor([&] { return table->item(last, 2) != nullptr; }, bound))
        qWarning("the last file got no verdict");
    QStringList verdicts;
    for (int row = 0; row <= last; ++row)
        verdicts.append(verdict(*table, row));
    return verdicts;
}
