#include "engine/files/inputfile.h"
#include "engine/system/failure.h"
#include "support/files.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class TestInputFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void noFile_data();
    void noFile();
    void unchanged();
    void changed_data();
    void changed();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }
    static void setTime(const QString &path, qint64 seconds);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestInputFile::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    write(path(u"a"_s), "content");
    setTime(path(u"a"_s), 1'000'000);
}

// The clock of a file system may stand still for some milliseconds; a test need not wait for it.
void TestInputFile::setTime(const QString &path, qint64 seconds)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::fromSecsSinceEpoch(seconds),
                             QFileDevice::FileModificationTime));
}

void TestInputFile::noFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("nothing") << u"none"_s << u"No such file or directory"_s;
    QTest::newRow("folder") << u"."_s << u"not a file"_s;
    QTest::newRow("pipe") << u"pipe"_s << u"not a file"_s;
}

void TestInputFile::noFile()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    QCOMPARE(mkfifo(qPrintable(path(u"pipe"_s)), 0600), 0);
    try {
        const engine::InputFile file(path(name).toStdString());
        QFAIL("it was opened");
    } catch (const engine::Failure &failure) {
        QCOMPARE(QString::fromUtf8(failure.what()), path(name) + ": "_L1 + reason);
    }
}

void TestInputFile::unchanged()
{
    const engine::InputFile file(path(u"a"_s).toStdString());
    char byte = 0;
    QCOMPARE(read(file.descriptor(), &byte, 1), ssize_t(1));
    file.expectUnchanged();
}

void TestInputFile::changed_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<qint64>("time");
    QTest::newRow("longer") << QByteArray("contents") << qint64(1'000'000);
    QTest::newRow("shorter") << QByteArray("") << qint64(1'000'000);
    QTest::newRow("as long, at another time") << QByteArray("another") << qint64(1'000'001);
}

void TestInputFile::changed()
{
    QFETCH(QByteArray, content);
    QFETCH(qint64, time);
    const engine::InputFile input(path(u"a"_s).toStdString());
    write(path(u"a"_s), content);
    setTime(path(u"a"_s), time);
    QVERIFY_THROWS_EXCEPTION(engine::Failure, input.expectUnchanged());
}

QTEST_GUILESS_MAIN(TestInputFile)
#include "tst_inputfile.moc"
