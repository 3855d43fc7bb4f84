// Which files a command line means, and in which order.

#include "batch/input/inputlist.h"
#include "batch/refusal.h"
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class TestBatchInputList : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void files_data();
    void files();
    void foldersOfCopies();
    void linksToFoldersAreNotFollowed();
    void outputFolderIsLeftOut();
    void listNames();
    void shards();
    void refusals_data();
    void refusals();
    void foldersThatCantBeRead();
    void namesThatAreNotUtf8();
    void parentOfALinkedFolder();

private:
    void add(const QString &name) const;
    void addList(const QByteArray &content) const;
    QStringList paths(const batch::InputChoice &choice) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_before;
};

void TestBatchInputList::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    QVERIFY(QDir().mkdir("out"));
    for (const char *name : {"b.pdf", "in/c.pdf", "in/B.PDF", "in/a/z.pdf", "in/a.pdf",
                             "in/text.txt", "in/a/.hidden.pdf", "in/x.pdf/y.pdf", "plain"})
        add(name);
}

void TestBatchInputList::cleanup()
{
    QDir::setCurrent(m_before);
}

void TestBatchInputList::add(const QString &name) const
{
    QVERIFY(QDir().mkpath(QFileInfo(m_folder->filePath(name)).path()));
    QVERIFY(QFile(m_folder->filePath(name)).open(QIODevice::WriteOnly));
}

void TestBatchInputList::addList(const QByteArray &content) const
{
    write(m_folder->filePath("list"), content);
}

// Relative to the folder again.
QStringList TestBatchInputList::paths(const batch::InputChoice &choice) const
{
    QStringList paths;
    for (const batch::InputFile &file : batch::inputFiles(choice))
        paths.append(QDir().relativeFilePath(file.path));
    return paths;
}

void TestBatchInputList::files_data()
{
    QTest::addColumn<QStringList>("operands");
    QTest::addColumn<QStringList>("expected");

    const QStringList all = {"in/B.PDF", "in/a/.hidden.pdf", "in/a/z.pdf",
                             "in/a.pdf", "in/c.pdf",         "in/x.pdf/y.pdf"};
    QTest::newRow("a file") << QStringList{"b.pdf"} << QStringList{"b.pdf"};
    QTest::newRow("a file of any name") << QStringList{"plain"} << QStringList{"plain"};
    QTest::newRow("a folder") << QStringList{"in"} << all;
    QTest::newRow("with a slash") << QStringList{"in/"} << all;
    QTest::newRow("in the order of the line")
        << QStringList{"in/c.pdf", "b.pdf"} << QStringList{"in/c.pdf", "b.pdf"};
    QTest::newRow("a file twice") << QStringList{"b.pdf", "./b.pdf", "in/../b.pdf"}
                                  << QStringList{"b.pdf"};
    QTest::newRow("a folder twice") << QStringList{"in", "in/."} << all;
    QTest::newRow("a folder and one of its files")
        << QStringList{"in/c.pdf", "in"}
        << QStringList{"in/c.pdf",   "in/B.PDF", "in/a/.hidden.pdf",
                       "in/a/z.pdf", "in/a.pdf", "in/x.pdf/y.pdf"};
}

void TestBatchInputList::files()
{
    QFETCH(QStringList, operands);
    QTEST(paths({.paths = operands, .listFile = {}, .outputFolder = "out", .shard = {}}),
          "expected");
}

void TestBatchInputList::foldersOfCopies()
{
    QStringList folders;
    for (const batch::InputFile &file : batch::inputFiles(
             {.paths = {"in/a/z.pdf", "in"}, .listFile = {}, .outputFolder = "out", .shard = {}}))
        folders.append(file.folder());
    QCOMPARE(folders, QStringList({"", "", "a", "", "", "x.pdf"}));
}

void TestBatchInputList::linksToFoldersAreNotFollowed()
{
    QVERIFY(QFile::link(m_folder->path(), "in/loop.pdf"));
    QVERIFY(QFile::link(m_folder->filePath("b.pdf"), "in/linked.pdf"));
    QVERIFY(QFile::link("in", "link"));
    const QStringList found =
        paths({.paths = {"link"}, .listFile = {}, .outputFolder = "out", .shard = {}});
    QCOMPARE(found, QStringList({"link/B.PDF", "link/a/.hidden.pdf", "link/a/z.pdf", "link/a.pdf",
                                 "link/c.pdf", "link/linked.pdf", "link/x.pdf/y.pdf"}));
}

void TestBatchInputList::outputFolderIsLeftOut()
{
    QCOMPARE(paths({.paths = {"in"}, .listFile = {}, .outputFolder = "in/a", .shard = {}}),
             QStringList({"in/B.PDF", "in/a.pdf", "in/c.pdf", "in/x.pdf/y.pdf"}));
}

// Names need not exist: the engine says what is wrong with each.
void TestBatchInputList::listNames()
{
    addList(QByteArray("b.pdf\0\0in/a\0gone.pdf\0a\nb.pdf\0plain", 34));
    QCOMPARE(paths({.paths = {"in/c.pdf"}, .listFile = "list", .outputFolder = "out", .shard = {}}),
             QStringList({"in/c.pdf", "b.pdf", "in/a/.hidden.pdf", "in/a/z.pdf", "gone.pdf",
                          "a\nb.pdf", "plain"}));
}

void TestBatchInputList::shards()
{
    QStringList all;
    for (int part = 1; part <= 4; ++part)
        all += paths({.paths = {"in"},
                      .listFile = {},
                      .outputFolder = "out",
                      .shard = {.part = part, .count = 4}});
    QCOMPARE(all, QStringList({"in/B.PDF", "in/c.pdf", "in/a/.hidden.pdf", "in/x.pdf/y.pdf",
                               "in/a/z.pdf", "in/a.pdf"}));
}

void TestBatchInputList::refusals_data()
{
    QTest::addColumn<QStringList>("operands");
    QTest::addColumn<QString>("list");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");
    using Bytes = QByteArray;
    QTest::newRow("no file") << QStringList{"b.pdf", "gone.pdf"} << "" << Bytes()
                             << "no such file or folder: gone.pdf";
    QTest::newRow("empty name") << QStringList{""} << "" << Bytes() << "no such file or folder: ";
    QTest::newRow("output as input")
        << QStringList{"./out"} << "" << Bytes() << "the output folder is a folder to compress: ";
    QTest::newRow("no list") << QStringList{} << "gone" << Bytes()
                             << "the list gone can't be read: No such file or directory";
    QTest::newRow("lines instead of names")
        << QStringList{} << "list" << Bytes("b.pdf\nplain\n")
        << "the names in list have to end with NUL, as find -print0 writes them";
}

void TestBatchInputList::refusals()
{
    QFETCH(QStringList, operands);
    QFETCH(QString, list);
    QFETCH(QByteArray, content);
    QFETCH(QString, expected);
    addList(content);
    try {
        paths({.paths = operands,
               .listFile = list.isEmpty() ? std::nullopt : std::optional(list),
               .outputFolder = "out",
               .shard = {}});
        QFAIL("it was taken");
    } catch (const batch::Refusal &refusal) {
        QCOMPARE(QString(refusal.text()).remove(QDir::currentPath() + "/out"), expected);
        QCOMPARE(refusal.code(), batch::ExitCode::usage);
    }
}

// Nothing is left out in silence.
void TestBatchInputList::foldersThatCantBeRead()
{
    const std::string name(200, 'n');
    // Deeper than the system can name: even root can't read that.
    for (int level = 0; level < 25; ++level) {
        QVERIFY(QDir().mkdir(QString::fromStdString(name)));
        QVERIFY(QDir::setCurrent(QString::fromStdString(name)));
    }
    QVERIFY(QDir::setCurrent(m_folder->path()));
    const batch::InputFiles files = batch::inputFiles(
        {.paths = {m_folder->path()}, .listFile = {}, .outputFolder = "out", .shard = {}});
    const auto count = std::ranges::count_if(
        files, [](const batch::InputFile &file) { return !file.problem.isEmpty(); });
    QCOMPARE(count, 1);
    const auto failed = std::ranges::find_if(
        files, [](const batch::InputFile &file) { return !file.problem.isEmpty(); });
    QCOMPARE(failed->problem, "the folder can't be read: File name too long");
}

void TestBatchInputList::namesThatAreNotUtf8()
{
    for (const char *name : {"in/\xe4.pdf", "in/\xe5.pdf"}) {
        FILE *file = fopen(name, "w");
        QVERIFY(file);
        fclose(file);
    }
    const batch::InputFiles files = batch::inputFiles(
        {.paths = {"in", "b.pdf"}, .listFile = {}, .outputFolder = "out", .shard = {}});
    QStringList problems;
    for (const batch::InputFile &file : files) {
        if (!file.problem.isEmpty())
            problems.append(file.problem);
    }
    QCOMPARE(problems, QStringList({"its name is not in UTF-8", "its name is not in UTF-8"}));
    QCOMPARE(files.size(), 9U);
}

// What the system takes ".." for, not what the name looks like.
void TestBatchInputList::parentOfALinkedFolder()
{
    QVERIFY(QFile::link(m_folder->filePath("in/a"), "out/link"));
    QCOMPARE(
        paths({.paths = {"out/link/../c.pdf"}, .listFile = {}, .outputFolder = "out", .shard = {}}),
        QStringList("in/c.pdf"));
}

QTEST_GUILESS_MAIN(TestBatchInputList)
#include "tst_batch_inputlist.moc"
