#pragma once

#include <QFileInfo>
#include <QList>

class QTableWidget;

/// The file table: a row per file to compress, whose cells always belong to that file.
namespace filetable {

/// What the columns hold.
enum Column {
    pathColumn,
    sizeColumn,
    resultColumn,
};

/// Rows stay in the order in which they were added until the user clicks a header; paths are cut
/// at their front, so that a narrow column still shows the file's name.
void prepare(QTableWidget &table);

/// Inserts a row per file at `row`, in the files' order. A table that the user has sorted sorts
/// the new rows in, once they are complete.
void insertFiles(QTableWidget &table, int row, const QFileInfoList &files);

/// Full path of the file in a row.
QString path(const QTableWidget &table, int row);

/// Replaces a row's result by `verdict`. What it means in `outcome` is its tool tip, and its
/// description for those who don't see one.
void setResult(QTableWidget &table, int row, const QString &verdict, const QString &outcome);

/// Makes row 0 current and selects it.
void selectFirstRow(QTableWidget &table);

/// Selected rows, each once, the highest first.
QList<int> selectedRowsFromLast(const QTableWidget &table);

} // namespace filetable
