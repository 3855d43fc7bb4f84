#include "engine/process/diskwatch.h"

#include <QTest>

#include <sys/statvfs.h>

namespace {

constexpr std::uintmax_t blockSize = 4096;
unsigned long freeBlocks[2] = {}; // of two disks
bool readable = true;

} // namespace

// In the place of the C library's; the number of a file is that of its disk.
extern "C" int fstatvfs(int file, struct statvfs *disk) noexcept
{
    *disk = {};
    disk->f_bavail = freeBlocks[file];
    disk->f_bfree = 2 * freeBlocks[file]; // the rest is root's
    disk->f_frsize = blockSize;
    disk->f_bsize = 2 * blockSize;
    return readable ? 0 : -1;
}

class TestDiskWatch : public QObject
{
    Q_OBJECT

private slots:
    void isFillingUp_data();
    void isFillingUp();
    void unknownDisk();
};

void TestDiskWatch::isFillingUp_data()
{
    QTest::addColumn<int>("disk");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("now");
    QTest::addColumn<bool>("fillingUp");
    QTest::newRow("much is left") << 0 << 1000 << 500 << false;
    QTest::newRow("the reserve is left") << 0 << 1000 << 100 << false;
    QTest::newRow("less than the reserve is left") << 0 << 1000 << 99 << true;
    QTest::newRow("on another disk") << 1 << 1000 << 99 << true;
    QTest::newRow("nothing is left") << 0 << 1000 << 0 << true;
    QTest::newRow("less than the reserve has gone") << 0 << 150 << 51 << false;
    QTest::newRow("as much as the reserve has gone") << 0 << 150 << 50 << true;
    QTest::newRow("there was little before") << 0 << 99 << 0 << false;
    QTest::newRow("somebody made room") << 0 << 50 << 90 << false;
}

void TestDiskWatch::isFillingUp()
{
    QFETCH(int, disk);
    QFETCH(int, before);
    QFETCH(int, now);
    QFETCH(bool, fillingUp);
    freeBlocks[disk] = static_cast<unsigned long>(before);
    freeBlocks[1 - disk] = 1000;
    const engine::DiskWatch watch({0, 1}, 100 * blockSize);
    QVERIFY(!watch.isFillingUp());
    freeBlocks[disk] = static_cast<unsigned long>(now);
    QCOMPARE(watch.isFillingUp(), fillingUp);
}

void TestDiskWatch::unknownDisk()
{
    freeBlocks[0] = 1000;
    engine::DiskWatch known({0}, 100 * blockSize);
    readable = false;
    const engine::DiskWatch unknown({0}, 100 * blockSize);
    QVERIFY(!known.isFillingUp());
    readable = true;
    freeBlocks[0] = 0;
    QVERIFY(known.isFillingUp());
    QVERIFY(!unknown.isFillingUp());
}

QTEST_GUILESS_MAIN(TestDiskWatch)
#include "tst_diskwatch.moc"
