#include "core/droppedfiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

class TestDroppedFiles : public QObject
{
    Q_OBJECT

private slots:
    void droppedFiles_data();
    void droppedFiles();
};

void TestDroppedFiles::droppedFiles_data()
{
    QTest::addColumn<QStringList>("drop"); // names in a folder that has a folder "sub.pdf"; or URLs
    QTest::addColumn<QStringList>("pdfs");
    QTest::addColumn<bool>("endedByFolder");
    QTest::newRow("nothing") << QStringList() << QStringList() << false;
    QTest::newRow("in the order of the drop")
        << QStringList{u"b.pdf"_s, u"a.PDF"_s} << QStringList{u"b.pdf"_s, u"a.PDF"_s} << false;
    QTest::newRow("other files") << QStringList{u"a.txt"_s, u"pdf"_s, u"a.pdf.gz"_s, u"b.pdf"_s}
                                 << QStringList{u"b.pdf"_s} << false;
    QTest::newRow("a folder ends it")
        << QStringList{u"a.pdf"_s, u"sub.pdf"_s, u"b.pdf"_s} << QStringList{u"a.pdf"_s} << true;
    QTest::newRow("an address ends it")
        << QStringList{u"a.pdf"_s, u"https://example.org/x.pdf"_s, u"b.pdf"_s}
        << QStringList{u"a.pdf"_s} << false;
    QTest::newRow("an address first")
        << QStringList{u"https://example.org/x.pdf"_s, u"sub.pdf"_s} << QStringList() << false;
}

void TestDroppedFiles::droppedFiles()
{
    QFETCH(QStringList, drop);
    QFETCH(QStringList, pdfs);
    QFETCH(bool, endedByFolder);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"sub.pdf"_s));
    QList<QUrl> urls;
    for (const QString &name : drop)
        urls << (name.contains(u':') ? QUrl(name) : QUrl::fromLocalFile(folder.filePath(name)));
    const core::DroppedFiles dropped = core::droppedFiles(urls);
    QStringList found;
    for (const QFileInfo &file : dropped.pdfs)
        found << file.fileName();
    QCOMPARE(found, pdfs);
    QCOMPARE(dropped.endedByFolder, endedByFolder);
}

QTEST_GUILESS_MAIN(TestDroppedFiles)
#include "tst_droppedfiles.moc"
