#include "engine/files/privatefolder.h"
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <dirent.h>
#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace {

int readableEntries = -1; // of the folder being read, before the disk fails; -1: all

} // namespace

// In the place of the C library's.
extern "C" dirent *readdir(DIR *folder)
{
    if (readableEntries == 0) {
        errno = EIO;
        return nullptr;
    }
    if (readableEntries > 0)
        --readableEntries;
    const auto real = reinterpret_cast<dirent *(*)(DIR *)>(dlsym(RTLD_NEXT, "readdir"));
    return real(folder);
}

class TestPrivateFolder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void workSize();
    void failingDisk();

private:
    QByteArray m_temporaryBefore;
    QTemporaryDir m_temporary;
};

void TestPrivateFolder::initTestCase()
{
    m_temporaryBefore = qgetenv("TMPDIR");
    qputenv("TMPDIR", m_temporary.path().toUtf8());
}

void TestPrivateFolder::cleanupTestCase()
{
    qputenv("TMPDIR", m_temporaryBefore);
}

void TestPrivateFolder::workSize()
{
    const engine::PrivateFolder folder;
    QCOMPARE(folder.workSize(), std::uintmax_t(0));
    for (const auto &[name, size] : {std::pair("a", 10), std::pair("b", 7000)})
        writeZeros(QString::fromStdString(folder.workFolder() / name), size);
    QVERIFY(QFile::link(u"/nowhere"_s, QString::fromStdString(folder.workFolder() / "dangling")));
    QCOMPARE(folder.workSize(), std::uintmax_t(7010));
}

// In the system's folder for temporary files, and in our own: what can't be read is not there.
void TestPrivateFolder::failingDisk()
{
    const auto restore = qScopeGuard([] { readableEntries = -1; });
    for (int count = 0; count < 6; ++count)
        QVERIFY(QDir(m_temporary.path()).mkdir(QString::number(count)));
    readableEntries = 4;
    const engine::PrivateFolder folder;
    QCOMPARE(readableEntries, 0);
    QVERIFY(QDir(QString::fromStdString(folder.workFolder())).exists());
    QCOMPARE(folder.workSize(), std::uintmax_t(0));
}

QTEST_GUILESS_MAIN(TestPrivateFolder)
#include "tst_privatefolder.moc"
