#include "filetable.h"

#include "core/sizetext.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QTextDocument>
#include <QToolTip>

#include <functional>
#include <set>

using namespace Qt::StringLiterals;

namespace filetable {

namespace {

// A sorted table moves a row as soon as the cell it is sorted by is set, and the cells set next
// would land in another file's row.
class SortingPause
{
public:
    explicit SortingPause(QTableWidget &table)
        : m_table(table)
    {
        m_table.setSortingEnabled(false);
    }
    ~SortingPause() { m_table.setSortingEnabled(true); }
    Q_DISABLE_COPY_MOVE(SortingPause)

private:
    QTableWidget &m_table;
};

// Tool tips are rich text if they look like it, and file names may.
QString toolTip(const QString &path)
{
    return Qt::mightBeRichText(path) ? "<qt>"_L1 + path.toHtmlEscaped() + "</qt>"_L1 : path;
}

// A tip takes the style sheet of the widget that it is shown for, and the table's makes it black on
// black: it is shown for the window instead.
class Tips : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override
    {
        if (event->type() != QEvent::ToolTip)
            return QStyledItemDelegate::helpEvent(event, view, option, index);
        QToolTip::showText(event->globalPos(), index.data(Qt::ToolTipRole).toString(),
                           view->window());
        return true;
    }
};

// Sorts by what its text is made from: "2.000 KB" before "1.500 MB".
class SizeItem : public QTableWidgetItem
{
public:
    SizeItem(const QString &text, qint64 bytes)
        : QTableWidgetItem(text)
        , m_bytes(bytes)
    {
    }

    bool operator<(const QTableWidgetItem &other) const override
    {
        const auto *size = dynamic_cast<const SizeItem *>(&other);
        return size ? m_bytes < size->m_bytes : QTableWidgetItem::operator<(other);
    }

private:
    qint64 m_bytes;
};

QTableWidgetItem *pathItem(const QString &path)
{
    auto *item = new QTableWidgetItem(path);
    item->setToolTip(toolTip(path));
    return item;
}

void fillRow(QTableWidget &table, int row, const QFileInfo &file)
{
    table.setItem(row, pathColumn, pathItem(file.filePath()));
    const QString size = file.isReadable() ? core::sizeText(file.size()) : QString();
    if (!size.isEmpty())
        table.setItem(row, sizeColumn, new SizeItem(size, file.size()));
}

} // namespace

void prepare(QTableWidget &table)
{
    table.horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    table.setTextElideMode(Qt::ElideLeft);
    table.setWordWrap(false);
    auto *tips = new Tips(&table);
    table.setItemDelegateForColumn(pathColumn, tips);
    table.setItemDelegateForColumn(resultColumn, tips);
}

void insertFiles(QTableWidget &table, int row, const QFileInfoList &files)
{
    const SortingPause pause(table);
    table.model()->insertRows(row, static_cast<int>(files.size()));
    for (const QFileInfo &file : files)
        fillRow(table, row++, file);
}

QString path(const QTableWidget &table, int row)
{
    return table.item(row, pathColumn)->text();
}

// The item is whole before it is set: a sorted table moves the row then.
void setResult(QTableWidget &table, int row, const QString &verdict, const QString &outcome)
{
    auto *item = new QTableWidgetItem(verdict);
    item->setToolTip(outcome);
    item->setData(Qt::AccessibleDescriptionRole, outcome);
    table.setItem(row, resultColumn, item);
}

void selectFirstRow(QTableWidget &table)
{
    table.setCurrentCell(0, 0, QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

QList<int> selectedRowsFromLast(const QTableWidget &table)
{
    std::set<int, std::greater<>> rows;
    for (const QModelIndex &index : table.selectionModel()->selectedIndexes())
        rows.insert(index.row());
    return {rows.begin(), rows.end()};
}

} // namespace filetable
