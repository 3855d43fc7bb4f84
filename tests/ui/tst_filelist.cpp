#include "src/filetable.h"
#include "src/process.h"
#include "support/bound.h"
#include "support/dragdrop.h"
#include "support/modal.h"
#include "support/sandbox.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <memory>
#include <unistd.h>

namespace {

// Takes the place of the desktop's default application.
class OpenedFiles : public QObject
{
    Q_OBJECT

public:
    OpenedFiles() { QDesktopServices::setUrlHandler("file", this, "open"); }
    ~OpenedFiles() override { QDesktopServices::unsetUrlHandler("file"); }
    QList<QUrl> urls;

public slots:
    void open(const QUrl &url) { urls.append(url); }
};

QUrl local(const QString &path)
{
    return QUrl::fromLocalFile(path);
}

} // namespace

class TestFileList : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void addAppendsInOrderAndSelectsFirstRow();
    void addDialogIsSetUp();
    void addStartsInTheRememberedFolder();
    void cancelledAddChangesNothing();
    void sameFileTwiceGivesTwoRows();
    void sizes_data();
    void sizes();
    void narrowColumnShowsTheName();
    void dragIsTakenIfItCarriesUrls();
    void dropPutsEachFileAboveTheOneBefore();
    void droppedSuffixes_data();
    void droppedSuffixes();
    void dropOfOtherFilesSelectsFirstRow();
    void folderEndsADrop();
    void foreignUrlEndsADropButSelects();
    void dropWithoutUrlsIsNothing();
    void droppedFilesStayWithTheirOwner();
    void dropRemembersNoFolder();
    void dropOnTheFolderFieldIsForTheList();
    void earlierSelectionStays();
    void sizesSortByBytes();
    void unreadableFileHasNoSize();
    void removeSelected();
    void removeWithNothingSelected();
    void removeLastRowCutsThePreview();
    void removeAll();
    void removeAllOfAnEmptyTable();
    void doubleClickOpensTheFile();
    void clickAndSelectionStartThePreview();
    void rememberedOutputFolderIsOnlyWhereToChoose();
    void chooseOutputFolder();
    void cancelledOutputFolderClearsIt();
    void sortedTableKeepsRowsTogether_data();
    void sortedTableKeepsRowsTogether();
    void manyFiles();

private:
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return m_window->findChild<Widget *>(name);
    }
    QTableWidget *table() const { return find<QTableWidget>("inputfiletableWidget"); }
    QString cell(int row, int column) const;
    QStringList names() const;
    QList<int> selectedRows() const;
    void addFiles(const QStringList &paths);
    bool drop(const QList<QUrl> &urls);
    void clickHeader(int column);

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<Process> m_window;
};

void TestFileList::init()
{
    m_sandbox = std::make_unique<Sandbox>();
    m_window = std::make_unique<Process>();
    m_window->show();
}

void TestFileList::cleanup()
{
    m_window.reset();
    m_sandbox.reset();
}

// "-" where there is no item.
QString TestFileList::cell(int row, int column) const
{
    const QTableWidgetItem *item = table()->item(row, column);
    return item ? item->text() : QString("-");
}

QStringList TestFileList::names() const
{
    QStringList all;
    for (int row = 0; row < table()->rowCount(); ++row)
        all.append(QFileInfo(cell(row, 0)).fileName());
    return all;
}

QList<int> TestFileList::selectedRows() const
{
    QList<int> rows;
    for (const QModelIndex &index : table()->selectionModel()->selectedRows())
        rows.append(index.row());
    std::ranges::sort(rows);
    return rows;
}

// Through the button and the file dialog, as the user does. All files lie in one folder.
void TestFileList::addFiles(const QStringList &paths)
{
    NextModal dialog([&paths](QWidget &window) {
        auto &files = dynamic_cast<QFileDialog &>(window);
        files.setDirectory(QFileInfo(paths.constFirst()).path());
        QStringList quoted;
        for (const QString &path : paths)
            quoted.append('"' + QFileInfo(path).fileName() + '"');
        files.findChild<QLineEdit *>("fileNameEdit")->setText(quoted.join(' '));
        QMetaObject::invokeMethod(&files, "accept");
    });
    QTest::mouseClick(find<QPushButton>("openfileButton"), Qt::LeftButton);
    QVERIFY(dialog.wasShown());
}

bool TestFileList::drop(const QList<QUrl> &urls)
{
    return dropUrls(*m_window, urls).accepted;
}

void TestFileList::clickHeader(int column)
{
    const QHeaderView *header = table()->horizontalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                      {header->sectionViewportPosition(column) + 20, header->height() / 2});
    QCOMPARE(header->sortIndicatorSection(), column);
}

void TestFileList::addAppendsInOrderAndSelectsFirstRow()
{
    const QString a = m_sandbox->addInput("a.pdf");
    const QString b = m_sandbox->addInput("b.pdf");
    const QString c = m_sandbox->addInput("c.txt");
    addFiles({b, a});
    QCOMPARE(names(), QStringList({"b.pdf", "a.pdf"}));
    QCOMPARE(cell(0, 0), b);
    table()->clearSelection();
    table()->setCurrentCell(1, 2, QItemSelectionModel::NoUpdate);
    addFiles({c});
    QCOMPARE(names(), QStringList({"b.pdf", "a.pdf", "c.txt"}));
    QCOMPARE(table()->currentRow(), 0);
    QCOMPARE(table()->currentColumn(), 0);
    QCOMPARE(selectedRows(), QList<int>({0}));
    QCOMPARE(table()->selectedItems().size(), qsizetype(2)); // the whole row: path and size
    QCOMPARE(cell(0, 2), QString("-"));
    QCOMPARE(m_sandbox->stored("dir/input"), m_sandbox->inputFolder());
}

void TestFileList::addDialogIsSetUp()
{
    QStringList seen;
    NextModal dialog([&seen](QWidget &window) {
        const auto &files = dynamic_cast<QFileDialog &>(window);
        seen = QStringList({files.windowTitle()}) + files.nameFilters();
        seen.append(QString::number(files.fileMode()));
        seen.append(files.parentWidget()->objectName());
        window.close();
    });
    QTest::mouseClick(find<QPushButton>("openfileButton"), Qt::LeftButton);
    QCOMPARE(seen, QStringList({"Add File", "PDF File(*.pdf)", "ALL files(*.*)",
                                QString::number(QFileDialog::ExistingFiles), "process"}));
}

void TestFileList::addStartsInTheRememberedFolder()
{
    const auto startFolder = [this] {
        QString folder;
        NextModal dialog([&folder](QWidget &window) {
            folder = dynamic_cast<QFileDialog &>(window).directory().absolutePath();
            window.close();
        });
        QTest::mouseClick(find<QPushButton>("openfileButton"), Qt::LeftButton);
        return folder;
    };
    QCOMPARE(startFolder(), QDir::currentPath());
    m_sandbox->store("dir/input", m_sandbox->inputFolder());
    QCOMPARE(startFolder(), m_sandbox->inputFolder());
}

void TestFileList::cancelledAddChangesNothing()
{
    NextModal dialog([](QWidget &window) { window.close(); });
    QTest::mouseClick(find<QPushButton>("openfileButton"), Qt::LeftButton);
    QVERIFY(dialog.wasShown());
    QCOMPARE(table()->rowCount(), 0);
    QCOMPARE(m_sandbox->stored("dir/input"), QString("(absent)"));
}

void TestFileList::sameFileTwiceGivesTwoRows()
{
    const QString a = m_sandbox->addInput("a.pdf");
    addFiles({a});
    addFiles({a});
    QCOMPARE(names(), QStringList({"a.pdf", "a.pdf"}));
}

void TestFileList::sizes_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("text");

    QTest::newRow("missing") << Q_INT64_C(-1) << "-";
    QTest::newRow("empty") << Q_INT64_C(0) << "-";
    QTest::newRow("largest in KB") << Q_INT64_C(1048576) << "      1048.576 KB";
    QTest::newRow("smallest in MB") << Q_INT64_C(1048577) << "         1.049 MB";
    QTest::newRow("beyond 32 bits") << Q_INT64_C(0x100000000) << "-"; // sparse
}

void TestFileList::sizes()
{
    QFETCH(qint64, bytes);
    QFETCH(QString, text);
    const QString path = m_sandbox->addInput("a.pdf", std::max<qint64>(bytes, 0));
    if (bytes < 0)
        QVERIFY(QFile::remove(path));
    drop({local(path)});
    QCOMPARE(cell(0, 0), path);
    QCOMPARE(cell(0, 1), text);
}

void TestFileList::narrowColumnShowsTheName()
{
    const QString path = m_sandbox->addInput("a name.pdf");
    drop({local(path)});
    const QFontMetrics metrics(table()->font());
    const int room = table()->columnWidth(0);
    QVERIFY(metrics.horizontalAdvance(path) > room);
    const QString shown = metrics.elidedText(path, table()->textElideMode(), room - 8);
    QVERIFY2(shown.endsWith("a name.pdf"), qPrintable(shown));
}

void TestFileList::dragIsTakenIfItCarriesUrls()
{
    const auto taken = [this](const char *format) {
        QMimeData data;
        data.setData(format, "file:///a.txt\r\n");
        return dragAndDrop(*m_window, data).entered;
    };
    QVERIFY(taken("text/uri-list"));
    QVERIFY(!taken("text/plain"));
}

void TestFileList::dropPutsEachFileAboveTheOneBefore()
{
    drop({local("/x/1.pdf")});
    drop({local("/x/2.pdf")});
    drop({local("/x/a.pdf"), local("/x/b.pdf"), local("/x/c.pdf")});
    QCOMPARE(names(), QStringList({"1.pdf", "2.pdf", "c.pdf", "b.pdf", "a.pdf"}));
    QCOMPARE(table()->currentRow(), 0);
    QCOMPARE(selectedRows(), QList<int>({0}));
}

void TestFileList::droppedSuffixes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("listed");

    QTest::newRow("lower") << "x.pdf" << true;
    QTest::newRow("upper") << "X.PDF" << true;
    QTest::newRow("mixed") << "x.Pdf" << true;
    QTest::newRow("several dots") << "x.y.pdf" << true;
    QTest::newRow("only a suffix") << ".pdf" << true;
    QTest::newRow("backup") << "x.pdf.bak" << false;
    QTest::newRow("none") << "pdf" << false;
    QTest::newRow("dot at the end") << "x.pdf." << false;
    QTest::newRow("text") << "x.txt" << false;
}

void TestFileList::droppedSuffixes()
{
    QFETCH(QString, name);
    QFETCH(bool, listed);
    drop({local(m_sandbox->addInput(name))});
    QCOMPARE(names(), listed ? QStringList({name}) : QStringList());
}

void TestFileList::dropOfOtherFilesSelectsFirstRow()
{
    drop({local("/x/1.pdf"), local("/x/2.pdf")});
    table()->clearSelection();
    drop({local("/x/a.txt")});
    QCOMPARE(table()->rowCount(), 2);
    QCOMPARE(selectedRows(), QList<int>({0}));
}

void TestFileList::folderEndsADrop()
{
    const QString folder = m_sandbox->inputFolder();
    drop({local("/x/a.pdf"), local("/x/b.pdf"), local(folder), local("/x/c.pdf")});
    QCOMPARE(names(), QStringList({"b.pdf", "a.pdf"}));
    QCOMPARE(selectedRows(), QList<int>());
    // Also one that is called like a file.
    QVERIFY(QDir(folder).mkdir("folder.pdf"));
    drop({local(folder + "/folder.pdf"), local("/x/c.pdf")});
    QCOMPARE(table()->rowCount(), 2);
    QCOMPARE(selectedRows(), QList<int>());
}

void TestFileList::foreignUrlEndsADropButSelects()
{
    drop({local("/x/a.pdf"), QUrl("https://corvane.example/b.pdf"), local("/x/c.pdf")});
    QCOMPARE(names(), QStringList({"a.pdf"}));
    QCOMPARE(selectedRows(), QList<int>({0}));
}

void TestFileList::dropWithoutUrlsIsNothing()
{
    drop({local("/x/a.pdf")});
    table()->clearSelection();
    QVERIFY(!drop({}));
    QCOMPARE(table()->rowCount(), 1);
    QCOMPARE(selectedRows(), QList<int>());
}

// The one who drags would delete what was moved.
void TestFileList::droppedFilesStayWithTheirOwner()
{
    const DropResult result = dropUrls(*m_window, {local("/x/a.pdf")});
    QVERIFY(result.accepted);
    QCOMPARE(result.action, Qt::CopyAction);
    QCOMPARE(result.announced, Qt::CopyAction);
}

void TestFileList::dropRemembersNoFolder()
{
    QVERIFY(drop({QUrl::fromLocalFile(m_sandbox->addInput("a.pdf"))}));
    QCOMPARE(table()->rowCount(), 1);
    QCOMPARE(m_sandbox->stored("dir/input"), QString("(absent)"));
}

void TestFileList::dropOnTheFolderFieldIsForTheList()
{
    auto *field = find<QLineEdit>("outputfolderEdit");
    QVERIFY(!field->acceptDrops());
}

void TestFileList::earlierSelectionStays()
{
    drop({local("/0.pdf")});
    drop({local("/1.pdf")});
    table()->clearSelection();
    table()->setRangeSelected({1, 0, 1, 2}, true);
    drop({local("/2.pdf")});
    QCOMPARE(selectedRows(), QList<int>({0, 1}));
}

void TestFileList::sizesSortByBytes()
{
    for (const int bytes : {1500000, 2000, 12000000, 900000, 50000})
        drop({local(m_sandbox->addInput(QString("%1.pdf").arg(bytes), bytes))});
    clickHeader(1);
    QCOMPARE(names(),
             QStringList({"2000.pdf", "50000.pdf", "900000.pdf", "1500000.pdf", "12000000.pdf"}));
}

// As another user for a moment: nothing is unreadable for root.
void TestFileList::unreadableFileHasNoSize()
{
    const QString path = m_sandbox->addInput("a.pdf", 2000);
    QVERIFY(QFile::setPermissions(path, {}));
    const bool root = geteuid() == 0;
    QVERIFY(!root || setresuid(65534, uid_t(-1), uid_t(-1)) == 0);
    drop({local(path)});
    QVERIFY(!root || setresuid(0, uid_t(-1), uid_t(-1)) == 0);
    QCOMPARE(cell(0, 0), path);
    QCOMPARE(cell(0, 1), QString("-"));
}

void TestFileList::removeSelected()
{
    for (const char *path : {"/0.pdf", "/1.pdf", "/2.pdf", "/3.pdf", "/4.pdf"})
        drop({local(path)});
    table()->clearSelection();
    table()->setRangeSelected({1, 0, 1, 2}, true);
    table()->setRangeSelected({3, 0, 3, 2}, true);
    QTest::mouseClick(find<QPushButton>("removeButton"), Qt::LeftButton);
    QCOMPARE(names(), QStringList({"0.pdf", "2.pdf", "4.pdf"}));
}

void TestFileList::removeWithNothingSelected()
{
    drop({local("/0.pdf")});
    table()->clearSelection();
    QTest::mouseClick(find<QPushButton>("removeButton"), Qt::LeftButton);
    QCOMPARE(names(), QStringList({"0.pdf"}));
}

void TestFileList::removeLastRowCutsThePreview()
{
    auto *timer = m_window->findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    drop({local("/0.pdf")});
    timer->stop();
    QTest::mouseClick(find<QPushButton>("removeButton"), Qt::LeftButton);
    QCOMPARE(table()->rowCount(), 0);
    QVERIFY(!timer->isActive());
    // The next Add restores it, though it be cancelled, and so does the next Remove.
    NextModal dialog([](QWidget &window) { window.close(); });
    QTest::mouseClick(find<QPushButton>("openfileButton"), Qt::LeftButton);
    drop({local("/1.pdf")});
    QVERIFY(timer->isActive());
    QTest::mouseClick(find<QPushButton>("removeButton"), Qt::LeftButton);
    timer->stop();
    drop({local("/1.pdf")});
    QVERIFY(!timer->isActive());
    table()->clearSelection();
    QTest::mouseClick(find<QPushButton>("removeButton"), Qt::LeftButton);
    table()->selectRow(0);
    QVERIFY(timer->isActive());
}

void TestFileList::removeAll()
{
    auto *timer = m_window->findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    drop({local("/0.pdf"), local("/1.pdf")});
    drop({local("/0.pdf")});
    table()->clearSelection();
    timer->stop();
    QTest::mouseClick(find<QPushButton>("removeallButton"), Qt::LeftButton);
    QCOMPARE(table()->rowCount(), 0);
    QVERIFY(!timer->isActive());
    // It restores the connection itself.
    drop({local("/1.pdf")});
    QVERIFY(timer->isActive());
}

void TestFileList::removeAllOfAnEmptyTable()
{
    QTest::mouseClick(find<QPushButton>("removeallButton"), Qt::LeftButton);
    QCOMPARE(table()->rowCount(), 0);
}

void TestFileList::doubleClickOpensTheFile()
{
    OpenedFiles opened;
    const QString path = m_sandbox->addInput("a #1 50%.pdf");
    drop({local("/x/b.pdf")});
    drop({local(path)});
    const QPoint place = table()->visualItemRect(table()->item(1, 0)).center();
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QCOMPARE(opened.urls, QList<QUrl>({local(path)}));
    table()->setRowCount(0);
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "setopenselected"));
    QCOMPARE(opened.urls.size(), qsizetype(1));
}

void TestFileList::clickAndSelectionStartThePreview()
{
    auto *timer = m_window->findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    drop({local("/0.pdf"), local("/1.pdf")});
    QVERIFY(timer->isActive()); // row 0 was selected
    timer->stop();
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      table()->visualItemRect(table()->item(0, 0)).center());
    QVERIFY(timer->isActive()); // clicked, though the selection stayed
    timer->stop();
    table()->selectRow(1);
    QVERIFY(timer->isActive());
}

void TestFileList::rememberedOutputFolderIsOnlyWhereToChoose()
{
    m_sandbox->store("dir/output", m_sandbox->outputFolder());
    const Process window;
    QCOMPARE(window.findChild<QLineEdit *>("outputfolderEdit")->text(), QString());
}

void TestFileList::chooseOutputFolder()
{
    m_sandbox->store("dir/output", m_sandbox->inputFolder());
    QStringList seen;
    NextModal dialog([this, &seen](QWidget &window) {
        auto &folder = dynamic_cast<QFileDialog &>(window);
        seen = {folder.windowTitle(), folder.directory().absolutePath(),
                QString::number(folder.fileMode()),
                QString::number(folder.options() & QFileDialog::ShowDirsOnly ? 1 : 0),
                QString::number(folder.options() & QFileDialog::DontResolveSymlinks ? 1 : 0)};
        folder.findChild<QLineEdit *>("fileNameEdit")->setText(m_sandbox->outputFolder());
        QMetaObject::invokeMethod(&folder, "accept");
    });
    QTest::mouseClick(find<QPushButton>("outputButton"), Qt::LeftButton);
    QCOMPARE(seen, QStringList({"Save", m_sandbox->inputFolder(),
                                QString::number(QFileDialog::Directory), "1", "1"}));
    QCOMPARE(find<QLineEdit>("outputfolderEdit")->text(), m_sandbox->outputFolder());
    QCOMPARE(m_sandbox->stored("dir/output"), m_sandbox->outputFolder());
}

void TestFileList::cancelledOutputFolderClearsIt()
{
    m_sandbox->store("dir/output", m_sandbox->outputFolder());
    find<QLineEdit>("outputfolderEdit")->setText(m_sandbox->outputFolder());
    NextModal dialog([](QWidget &window) { window.close(); });
    QTest::mouseClick(find<QPushButton>("outputButton"), Qt::LeftButton);
    QVERIFY(dialog.wasShown());
    QCOMPARE(find<QLineEdit>("outputfolderEdit")->text(), QString());
    QCOMPARE(m_sandbox->stored("dir/output"), QString());
}

void TestFileList::sortedTableKeepsRowsTogether_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("clicks");
    for (int column = 0; column < 3; ++column) {
        for (int clicks = 1; clicks <= 2; ++clicks)
            QTest::addRow("column %d, %d click(s)", column, clicks) << column << clicks;
    }
}

void TestFileList::sortedTableKeepsRowsTogether()
{
    QFETCH(int, column);
    QFETCH(int, clicks);
    // Names and sizes sort differently.
    QHash<QString, QString> sizes;
    QStringList paths;
    for (int i = 0; i < 9; ++i) {
        const int bytes = 1000 * (1 + (i * 7) % 9);
        paths.append(m_sandbox->addInput(QString("%1.pdf").arg((i * 4) % 9), bytes));
        sizes.insert(paths.last(), QString::asprintf("%14.3f KB", bytes / 1000.0));
    }
    addFiles(paths.mid(0, 3));
    for (int click = 0; click < clicks; ++click)
        clickHeader(column);
    addFiles(paths.mid(3, 3));
    drop({local(paths[6]), local(paths[7]), local(paths[8])});

    QCOMPARE(table()->rowCount(), 9);
    QStringList listed;
    for (int row = 0; row < 9; ++row) {
        listed.append(cell(row, 0));
        QCOMPARE(cell(row, 1), sizes.value(cell(row, 0)));
        QCOMPARE(cell(row, 2), QString("-"));
    }
    QStringList sorted = listed;
    std::ranges::sort(sorted);
    QStringList all = paths;
    std::ranges::sort(all);
    QCOMPARE(sorted, all);
    // And the table is sorted as its header says.
    QStringList keys;
    for (int row = 0; row < 9; ++row)
        keys.append(column == 2 ? QString() : cell(row, column));
    if (clicks == 2)
        std::ranges::reverse(keys);
    QVERIFY(std::ranges::is_sorted(keys));
}

void TestFileList::manyFiles()
{
    constexpr int files = 10000;
    QList<QUrl> urls;
    for (int i = 0; i < files; ++i)
        urls.append(local(QString("/x/%1.pdf").arg(i)));
    drop(urls);
    QCOMPARE(table()->rowCount(), files);
    QCOMPARE(cell(0, 0), QString("/x/9999.pdf"));
    QCOMPARE(cell(files - 1, 0), QString("/x/0.pdf"));
    QTest::mouseClick(find<QPushButton>("removeallButton"), Qt::LeftButton);
    QCOMPARE(table()->rowCount(), 0);
}

QTEST_MAIN(TestFileList)
#include "tst_filelist.moc"
