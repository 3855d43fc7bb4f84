#include "core/markfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

} // namespace

class TestMarkFile : public QObject
{
    Q_OBJECT

private slots:
    void text_data();
    void text();
    void blankText();
    void bytes();
    void replacesALongerFile();
    void leavesWhatItCannotOpen();
};

void TestMarkFile::text_data()
{
    QTest::addColumn<core::Description>("description");
    QTest::addColumn<QString>("expected");

    QTest::newRow("all fields")
        << core::Description{u"T"_s, u"A"_s, u"S"_s, u"K"_s, u"C"_s, u"P"_s}
        << u"[ /Title (T)\n /Author (A) \n /Subject (S) \n /Keywords (K) \n /Creator (C)"
           " \n /Producer (P) \n /DOCINFO pdfmark"_s;
    QTest::newRow("no field")
        << core::Description{}
        << u"[ /Title ()\n /Author () \n /Subject () \n /Keywords () \n /Creator ()"
           " \n /Producer () \n /DOCINFO pdfmark"_s;
    QTest::newRow("nothing is escaped")
        << core::Description{u"a) (b"_s, u"\\n\\"_s, u"\"'<>"_s, u"100 %"_s, u" "_s, u"/ [ ]"_s}
        << u"[ /Title (a) (b)\n /Author (\\n\\) \n /Subject (\"'<>) \n /Keywords (100 %)"
           " \n /Creator ( ) \n /Producer (/ [ ]) \n /DOCINFO pdfmark"_s;
    QTest::newRow("a later marker in a field is filled by the later field")
        << core::Description{u"<%3>"_s, u"A"_s, u"S"_s, u"K"_s, u"C"_s, u"P"_s}
        << u"[ /Title (<S>)\n /Author (A) \n /Subject (S) \n /Keywords (K) \n /Creator (C)"
           " \n /Producer (P) \n /DOCINFO pdfmark"_s;
    // The title's own marker is the lowest one when the author's turn comes, and so on.
    QTest::newRow("marker 1 in the title moves all others up")
        << core::Description{u"%1"_s, u"A"_s, u"S"_s, u"K"_s, u"C"_s, u"P"_s}
        << u"[ /Title (A)\n /Author (S) \n /Subject (K) \n /Keywords (C) \n /Creator (P)"
           " \n /Producer (%6) \n /DOCINFO pdfmark"_s;
    QTest::newRow("a marker above the highest stays")
        << core::Description{u"%7"_s, u"%99"_s, u"S"_s, u"K"_s, u"C"_s, u"P"_s}
        << u"[ /Title (%7)\n /Author (%99) \n /Subject (S) \n /Keywords (K) \n /Creator (C)"
           " \n /Producer (P) \n /DOCINFO pdfmark"_s;
    QTest::newRow("a marker in the last field stays")
        << core::Description{u"T"_s, u"A"_s, u"S"_s, u"K"_s, u"C"_s, u"%1"_s}
        << u"[ /Title (T)\n /Author (A) \n /Subject (S) \n /Keywords (K) \n /Creator (C)"
           " \n /Producer (%1) \n /DOCINFO pdfmark"_s;
}

void TestMarkFile::text()
{
    QFETCH(core::Description, description);
    QTEST(core::markText(description), "expected");
}

void TestMarkFile::blankText()
{
    QCOMPARE(core::blankMarkText(), u" [ /Creator ( ) \n /Producer ( ) \n /DOCINFO pdfmark"_s);
}

// The tests run in a UTF-8 locale. No byte order mark, no carriage return, no line break at the
// end.
void TestMarkFile::bytes()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"pdfinfo.txt"_s);
    core::writeMarkFile(path, u"[ (Zoë 報告書)\n x"_s);
    QCOMPARE(contents(path), QByteArray("[ (Zo\xc3\xab \xe5\xa0\xb1\xe5\x91\x8a\xe6\x9b\xb8)\n x"));
}

void TestMarkFile::replacesALongerFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"pdfinfo.txt"_s);
    core::writeMarkFile(path, u"much longer than the other"_s);
    core::writeMarkFile(path, u"short"_s);
    QCOMPARE(contents(path), QByteArray("short"));
}

// A folder of that name can't be opened for writing, not even by root.
void TestMarkFile::leavesWhatItCannotOpen()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"pdfinfo.txt"_s);
    QVERIFY(QDir().mkdir(path));
    core::writeMarkFile(path, u"text"_s);
    QVERIFY(QFileInfo(path).isDir());
}

QTEST_GUILESS_MAIN(TestMarkFile)
#include "tst_markfile.moc"
