// What the next run clears of one that was killed.
#include "engine/files/fileid.h"
#include "engine/files/record.h"
#include "engine/files/runfolder.h"
#include "engine/system/failure.h"
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using engine::Record;
using engine::Recorded;

class TestRecord : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleared_data();
    void cleared();
    void betweenTwoNames();
    void runAtWork();
    void cannotBeWritten();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }
    [[nodiscard]] Record record() const { return {m_run.toStdString(), m_descriptor}; }
    static void identify(const Record &record, Recorded file, const QString &path);
    void clear() const { engine::clearRecorded(m_run.toStdString()); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_run;
    int m_descriptor = -1; // the folder's: not needed here
};

void TestRecord::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_run = path(u"run"_s);
    QVERIFY(QDir().mkdir(m_run));
}

void TestRecord::identify(const Record &record, Recorded file, const QString &path)
{
    QFile made(path);
    QVERIFY(made.open(QIODevice::ReadOnly));
    record.identify(file, made.handle());
}

void TestRecord::cleared_data()
{
    QTest::addColumn<bool>("placeholder"); // or the draft
    QTest::addColumn<QString>("state");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("goes");
    QTest::newRow("placeholder") << true << u"identified"_s << QByteArray() << true;
    QTest::newRow("placeholder, not identified") << true << u"unknown"_s << QByteArray() << true;
    QTest::newRow("written into") << true << u"identified"_s << QByteArray("x") << false;
    QTest::newRow("not identified, with content")
        << true << u"unknown"_s << QByteArray("x") << false;
    QTest::newRow("another file") << true << u"replaced"_s << QByteArray() << false;
    QTest::newRow("forgotten") << true << u"forgotten"_s << QByteArray() << false;
    QTest::newRow("link") << true << u"link"_s << QByteArray() << false;
    QTest::newRow("draft") << false << u"identified"_s << QByteArray("x") << true;
    QTest::newRow("draft, not identified") << false << u"unknown"_s << QByteArray() << true;
    QTest::newRow("draft, not identified, with content")
        << false << u"unknown"_s << QByteArray("x") << false;
    QTest::newRow("another draft") << false << u"replaced"_s << QByteArray("x") << false;
    QTest::newRow("forgotten draft") << false << u"forgotten"_s << QByteArray("x") << false;
    QTest::newRow("link for a draft") << false << u"link"_s << QByteArray() << false;
}

void TestRecord::cleared()
{
    QFETCH(bool, placeholder);
    QFETCH(QString, state);
    QFETCH(QByteArray, content);
    QFETCH(bool, goes);
    const Recorded file = placeholder ? Recorded::Placeholder : Recorded::Draft;
    const QString name = path(u"file"_s);
    write(path(u"elsewhere"_s), {});
    record().remember(file, name.toStdString());
    if (state == "link"_L1)
        QVERIFY(QFile::link(path(u"elsewhere"_s), name));
    else
        write(name, content);
    if (state != "unknown"_L1)
        identify(record(), file, state == "replaced"_L1 ? path(u"elsewhere"_s) : name);
    if (state == "forgotten"_L1)
        record().forget(file);
    clear();
    QCOMPARE(QFile::exists(name), !goes);
    QVERIFY(QFile::exists(path(u"elsewhere"_s)));
}

// Killed in the moment in which the copy has its name, and the placeholder the draft's.
void TestRecord::betweenTwoNames()
{
    const QString copy = path(u"copy"_s);
    const QString draft = path(u"draft"_s);
    write(copy, "");
    write(draft, "whole");
    record().remember(Recorded::Placeholder, copy.toStdString());
    identify(record(), Recorded::Placeholder, copy);
    record().remember(Recorded::Draft, draft.toStdString());
    identify(record(), Recorded::Draft, draft);
    QCOMPARE(renameat2(AT_FDCWD, qPrintable(copy), AT_FDCWD, qPrintable(draft), RENAME_EXCHANGE),
             0);
    clear();
    QVERIFY(!QFile::exists(draft));
    QCOMPARE(contentOf(copy), QByteArray("whole"));
}

// What a run holds that is at work stays; once nobody holds it, it goes.
void TestRecord::runAtWork()
{
    const QString name = path(u"file"_s);
    write(name, {});
    {
        const engine::RunFolder folder(m_folder->path().toStdString());
        const Record atWork(folder.path(), folder.descriptor());
        atWork.remember(Recorded::Placeholder, name.toStdString());
        engine::removeLeftRunFolders(m_folder->path().toStdString());
        QVERIFY(QFile::exists(name));
        QVERIFY(QDir(QString::fromStdString(folder.path())).exists());
        QVERIFY(QFile::rename(QString::fromStdString(folder.path()), path(u"kept"_s)));
    }
    const QString left = path(u"corvgs-%1-abcdef"_s.arg(quint64(geteuid())));
    QVERIFY(QFile::rename(path(u"kept"_s), left));
    engine::removeLeftRunFolders(m_folder->path().toStdString());
    QVERIFY(!QFile::exists(name));
    QVERIFY(!QDir(left).exists());
}

void TestRecord::cannotBeWritten()
{
    const Record nowhere(path(u"none"_s).toStdString(), m_descriptor);
    QVERIFY_THROWS_EXCEPTION(engine::Failure, nowhere.remember(Recorded::Draft, "/nowhere"));
}

QTEST_GUILESS_MAIN(TestRecord)
#include "tst_record.moc"
