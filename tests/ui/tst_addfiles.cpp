// How files come into the list: by the file dialog and by a drop.

#include "support/dragdrop.h"
#include "support/modal.h"
#include "windowtest.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QTableWidget>
#include <QTest>
#include <QUrl>

class TestAddFiles : public WindowTest
{
    Q_OBJECT

private slots:
    void addAppendsInOrderAndSelectsFirstRow();
    void addDialogIsSetUp();
    void addStartsInTheRememberedFolder();
    void cancelledAddChangesNothing();
    void sameFileTwiceGivesTwoRows();
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
};

void TestAddFiles::addAppendsInOrderAndSelectsFirstRow()
{
    const QString a = m_sandbox->addInput("a.pdf");
    const QString b = m_sandbox->addInput("b.pdf");
    const QString c = m_sandbox->addInput("c.txt");
    m_user->add({b, a});
    QCOMPARE(m_user->names(), QStringList({"b.pdf", "a.pdf"}));
    QCOMPARE(m_user->cell(0, WindowUser::path), b);
    m_user->table()->clearSelection();
    m_user->table()->setCurrentCell(1, 2, QItemSelectionModel::NoUpdate);
    m_user->add({c});
    QCOMPARE(m_user->names(), QStringList({"b.pdf", "a.pdf", "c.txt"}));
    QCOMPARE(m_user->table()->currentRow(), 0);
    QCOMPARE(m_user->table()->currentColumn(), 0);
    QCOMPARE(m_user->selectedRows(), QList<int>({0}));
    QCOMPARE(m_user->table()->selectedItems().size(), qsizetype(2)); // the whole row: path and size
    QCOMPARE(m_user->cell(0, WindowUser::result), QString(none));
    QCOMPARE(m_sandbox->stored("dir/input"), m_sandbox->inputFolder());
}

void TestAddFiles::addDialogIsSetUp()
{
    QStringList seen;
    NextModal dialog([&seen](QWidget &window) {
        const auto &files = dynamic_cast<QFileDialog &>(window);
        seen = QStringList({files.windowTitle()}) + files.nameFilters();
        seen.append(QString::number(files.fileMode()));
        seen.append(files.parentWidget()->objectName());
        window.close();
    });
    m_user->press("openfileButton");
    QCOMPARE(seen, QStringList({"Add File", "PDF File(*.pdf)", "ALL files(*.*)",
                                QString::number(QFileDialog::ExistingFiles), "process"}));
}

void TestAddFiles::addStartsInTheRememberedFolder()
{
    const auto startFolder = [this] {
        QString folder;
        NextModal dialog([&folder](QWidget &window) {
            folder = dynamic_cast<QFileDialog &>(window).directory().absolutePath();
            window.close();
        });
        m_user->press("openfileButton");
        return folder;
    };
    QCOMPARE(startFolder(), QDir::currentPath());
    m_sandbox->store("dir/input", m_sandbox->inputFolder());
    QCOMPARE(startFolder(), m_sandbox->inputFolder());
}

void TestAddFiles::cancelledAddChangesNothing()
{
    NextModal dialog([](QWidget &window) { window.close(); });
    m_user->press("openfileButton");
    QVERIFY(dialog.wasShown());
    QCOMPARE(m_user->table()->rowCount(), 0);
    QCOMPARE(m_sandbox->stored("dir/input"), QString("(absent)"));
}

void TestAddFiles::sameFileTwiceGivesTwoRows()
{
    const QString a = m_sandbox->addInput("a.pdf");
    m_user->add({a});
    m_user->add({a});
    QCOMPARE(m_user->names(), QStringList({"a.pdf", "a.pdf"}));
}

void TestAddFiles::dragIsTakenIfItCarriesUrls()
{
    const auto taken = [this](const char *format) {
        QMimeData data;
        data.setData(format, "file:///a.txt\r\n");
        return dragAndDrop(*m_window, data).entered;
    };
    QVERIFY(taken("text/uri-list"));
    QVERIFY(!taken("text/plain"));
}

void TestAddFiles::dropPutsEachFileAboveTheOneBefore()
{
    drop({local("/x/1.pdf")});
    drop({local("/x/2.pdf")});
    drop({local("/x/a.pdf"), local("/x/b.pdf"), local("/x/c.pdf")});
    QCOMPARE(m_user->names(), QStringList({"1.pdf", "2.pdf", "c.pdf", "b.pdf", "a.pdf"}));
    QCOMPARE(m_user->table()->currentRow(), 0);
    QCOMPARE(m_user->selectedRows(), QList<int>({0}));
}

void TestAddFiles::droppedSuffixes_data()
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

void TestAddFiles::droppedSuffixes()
{
    QFETCH(QString, name);
    QFETCH(bool, listed);
    drop({local(m_sandbox->addInput(name))});
    QCOMPARE(m_user->names(), listed ? QStringList({name}) : QStringList());
}

void TestAddFiles::dropOfOtherFilesSelectsFirstRow()
{
    drop({local("/x/1.pdf"), local("/x/2.pdf")});
    m_user->table()->clearSelection();
    drop({local("/x/a.txt")});
    QCOMPARE(m_user->table()->rowCount(), 2);
    QCOMPARE(m_user->selectedRows(), QList<int>({0}));
}

void TestAddFiles::folderEndsADrop()
{
    const QString folder = m_sandbox->inputFolder();
    drop({local("/x/a.pdf"), local("/x/b.pdf"), local(folder), local("/x/c.pdf")});
    QCOMPARE(m_user->names(), QStringList({"b.pdf", "a.pdf"}));
    QCOMPARE(m_user->selectedRows(), QList<int>());
    // Also one that is called like a file.
    QVERIFY(QDir(folder).mkdir("folder.pdf"));
    drop({local(folder + "/folder.pdf"), local("/x/c.pdf")});
    QCOMPARE(m_user->table()->rowCount(), 2);
    QCOMPARE(m_user->selectedRows(), QList<int>());
}

void TestAddFiles::foreignUrlEndsADropButSelects()
{
    drop({local("/x/a.pdf"), QUrl("https://corvane.example/b.pdf"), local("/x/c.pdf")});
    QCOMPARE(m_user->names(), QStringList({"a.pdf"}));
    QCOMPARE(m_user->selectedRows(), QList<int>({0}));
}

void TestAddFiles::dropWithoutUrlsIsNothing()
{
    drop({local("/x/a.pdf")});
    m_user->table()->clearSelection();
    QVERIFY(!drop({}));
    QCOMPARE(m_user->table()->rowCount(), 1);
    QCOMPARE(m_user->selectedRows(), QList<int>());
}

// The one who drags would delete what was moved.
void TestAddFiles::droppedFilesStayWithTheirOwner()
{
    const DropResult result = dropUrls(*m_window, {local("/x/a.pdf")});
    QVERIFY(result.accepted);
    QCOMPARE(result.action, Qt::CopyAction);
    QCOMPARE(result.announced, Qt::CopyAction);
}

void TestAddFiles::dropRemembersNoFolder()
{
    QVERIFY(drop({QUrl::fromLocalFile(m_sandbox->addInput("a.pdf"))}));
    QCOMPARE(m_user->table()->rowCount(), 1);
    QCOMPARE(m_sandbox->stored("dir/input"), QString("(absent)"));
}

void TestAddFiles::dropOnTheFolderFieldIsForTheList()
{
    auto *field = m_user->folderEdit();
    QVERIFY(!field->acceptDrops());
}

void TestAddFiles::earlierSelectionStays()
{
    drop({local("/0.pdf")});
    drop({local("/1.pdf")});
    m_user->table()->clearSelection();
    m_user->table()->setRangeSelected({1, 0, 1, 2}, true);
    drop({local("/2.pdf")});
    QCOMPARE(m_user->selectedRows(), QList<int>({0, 1}));
}

QTEST_MAIN(TestAddFiles)
#include "tst_addfiles.moc"
