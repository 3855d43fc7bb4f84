// What the list shows of its files, sorts, removes and opens.

#include "support/modal.h"
#include "windowtest.h"

#include <QDesktopServices>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <algorithm>
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

} // namespace

class TestFileTable : public WindowTest
{
    Q_OBJECT

private slots:
    void sizes_data();
    void sizes();
    void unreadableFileHasNoSize();
    void narrowColumnShowsTheName();
    void sizesSortByBytes();
    void sortedTableKeepsRowsTogether_data();
    void sortedTableKeepsRowsTogether();
    void removeSelected();
    void removeWithNothingSelected();
    void removeLastRowCutsThePreview();
    void removeAll();
    void removeAllOfAnEmptyTable();
    void doubleClickOpensTheFile();
    void clickAndSelectionStartThePreview();
    void manyFiles();
};

void TestFileTable::sizes_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("text");

    QTest::newRow("missing") << Q_INT64_C(-1) << none;
    QTest::newRow("empty") << Q_INT64_C(0) << none;
    QTest::newRow("largest in KB") << Q_INT64_C(1048576) << "      1048.576 KB";
    QTest::newRow("smallest in MB") << Q_INT64_C(1048577) << "         1.049 MB";
    QTest::newRow("beyond 32 bits") << Q_INT64_C(0x100000000) << none; // sparse
}

void TestFileTable::sizes()
{
    QFETCH(qint64, bytes);
    QFETCH(QString, text);
    const QString path = m_sandbox->addInput("a.pdf", std::max<qint64>(bytes, 0));
    if (bytes < 0)
        QVERIFY(QFile::remove(path));
    drop({local(path)});
    QCOMPARE(m_user->cell(0, WindowUser::path), path);
    QCOMPARE(m_user->cell(0, WindowUser::size), text);
}

// As another user for a moment: nothing is unreadable for root.
void TestFileTable::unreadableFileHasNoSize()
{
    const QString path = m_sandbox->addInput("a.pdf", 2000);
    QVERIFY(QFile::setPermissions(path, {}));
    const bool root = geteuid() == 0;
    QVERIFY(!root || setresuid(65534, uid_t(-1), uid_t(-1)) == 0);
    drop({local(path)});
    QVERIFY(!root || setresuid(0, uid_t(-1), uid_t(-1)) == 0);
    QCOMPARE(m_user->cell(0, WindowUser::path), path);
    QCOMPARE(m_user->cell(0, WindowUser::size), QString(none));
}

void TestFileTable::narrowColumnShowsTheName()
{
    const QString path = m_sandbox->addInput("a name.pdf");
    drop({local(path)});
    const QFontMetrics metrics(m_user->table()->font());
    const int room = m_user->table()->columnWidth(0);
    QVERIFY(metrics.horizontalAdvance(path) > room);
    const QString shown = metrics.elidedText(path, m_user->table()->textElideMode(), room - 8);
    QVERIFY2(shown.endsWith("a name.pdf"), qPrintable(shown));
}

void TestFileTable::sizesSortByBytes()
{
    for (const int bytes : {1500000, 2000, 12000000, 900000, 50000})
        drop({local(m_sandbox->addInput(QString("%1.pdf").arg(bytes), bytes))});
    m_user->clickHeader(WindowUser::size);
    QCOMPARE(m_user->names(),
             QStringList({"2000.pdf", "50000.pdf", "900000.pdf", "1500000.pdf", "12000000.pdf"}));
}

void TestFileTable::sortedTableKeepsRowsTogether_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("clicks");
    for (int column = 0; column < 3; ++column) {
        for (int clicks = 1; clicks <= 2; ++clicks)
            QTest::addRow("column %d, %d click(s)", column, clicks) << column << clicks;
    }
}

void TestFileTable::sortedTableKeepsRowsTogether()
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
    m_user->add(paths.mid(0, 3));
    m_user->clickHeader(WindowUser::Column(column), clicks);
    m_user->add(paths.mid(3, 3));
    drop({local(paths[6]), local(paths[7]), local(paths[8])});

    QCOMPARE(m_user->table()->rowCount(), 9);
    QStringList listed;
    for (int row = 0; row < 9; ++row) {
        listed.append(m_user->cell(row, WindowUser::path));
        QCOMPARE(m_user->cell(row, WindowUser::size),
                 sizes.value(m_user->cell(row, WindowUser::path)));
        QCOMPARE(m_user->cell(row, WindowUser::result), QString(none));
    }
    QStringList sorted = listed;
    std::ranges::sort(sorted);
    QStringList all = paths;
    std::ranges::sort(all);
    QCOMPARE(sorted, all);
    // And the table is sorted as its header says.
    QStringList keys;
    for (int row = 0; row < 9; ++row)
        keys.append(column == 2 ? QString() : m_user->cell(row, WindowUser::Column(column)));
    if (clicks == 2)
        std::ranges::reverse(keys);
    QVERIFY(std::ranges::is_sorted(keys));
}

void TestFileTable::removeSelected()
{
    for (const char *path : {"/0.pdf", "/1.pdf", "/2.pdf", "/3.pdf", "/4.pdf"})
        drop({local(path)});
    m_user->remove({1, 3});
    QCOMPARE(m_user->names(), QStringList({"0.pdf", "2.pdf", "4.pdf"}));
}

void TestFileTable::removeWithNothingSelected()
{
    drop({local("/0.pdf")});
    m_user->remove({});
    QCOMPARE(m_user->names(), QStringList({"0.pdf"}));
}

void TestFileTable::removeLastRowCutsThePreview()
{
    auto *timer = m_window->findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    drop({local("/0.pdf")});
    timer->stop();
    m_user->press("removeButton");
    QCOMPARE(m_user->table()->rowCount(), 0);
    QVERIFY(!timer->isActive());
    // The next Add restores it, though it be cancelled, and so does the next Remove.
    NextModal dialog([](QWidget &window) { window.close(); });
    m_user->press("openfileButton");
    drop({local("/1.pdf")});
    QVERIFY(timer->isActive());
    m_user->press("removeButton");
    timer->stop();
    drop({local("/1.pdf")});
    QVERIFY(!timer->isActive());
    m_user->remove({});
    m_user->table()->selectRow(0);
    QVERIFY(timer->isActive());
}

void TestFileTable::removeAll()
{
    auto *timer = m_window->findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    drop({local("/0.pdf"), local("/1.pdf")});
    drop({local("/0.pdf")});
    m_user->table()->clearSelection();
    timer->stop();
    m_user->press("removeallButton");
    QCOMPARE(m_user->table()->rowCount(), 0);
    QVERIFY(!timer->isActive());
    // It restores the connection itself.
    drop({local("/1.pdf")});
    QVERIFY(timer->isActive());
}

void TestFileTable::removeAllOfAnEmptyTable()
{
    m_user->press("removeallButton");
    QCOMPARE(m_user->table()->rowCount(), 0);
}

void TestFileTable::doubleClickOpensTheFile()
{
    OpenedFiles opened;
    const QString path = m_sandbox->addInput("a #1 50%.pdf");
    drop({local("/x/b.pdf")});
    drop({local(path)});
    const QPoint place = m_user->table()->visualItemRect(m_user->table()->item(1, 0)).center();
    QTest::mouseClick(m_user->table()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(m_user->table()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QCOMPARE(opened.urls, QList<QUrl>({local(path)}));
    m_user->table()->setRowCount(0);
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "setopenselected"));
    QCOMPARE(opened.urls.size(), qsizetype(1));
}

void TestFileTable::clickAndSelectionStartThePreview()
{
    auto *timer = m_window->findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    drop({local("/0.pdf"), local("/1.pdf")});
    QVERIFY(timer->isActive()); // row 0 was selected
    timer->stop();
    QTest::mouseClick(m_user->table()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      m_user->table()->visualItemRect(m_user->table()->item(0, 0)).center());
    QVERIFY(timer->isActive()); // clicked, though the selection stayed
    timer->stop();
    m_user->table()->selectRow(1);
    QVERIFY(timer->isActive());
}

void TestFileTable::manyFiles()
{
    constexpr int files = 10000;
    QList<QUrl> urls;
    for (int i = 0; i < files; ++i)
        urls.append(local(QString("/x/%1.pdf").arg(i)));
    drop(urls);
    QCOMPARE(m_user->table()->rowCount(), files);
    QCOMPARE(m_user->cell(0, WindowUser::path), QString("/x/9999.pdf"));
    QCOMPARE(m_user->cell(files - 1, WindowUser::path), QString("/x/0.pdf"));
    m_user->press("removeallButton");
    QCOMPARE(m_user->table()->rowCount(), 0);
}

QTEST_MAIN(TestFileTable)
#include "tst_filetable.moc"
