#include "engine/failure.h"
#include "engine/ghostscript.h"
#include "engine/judgement.h"
#include "engine/limits.h"
#include "engine/stallwatch.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class TestPieces : public QObject
{
    Q_OBJECT

private slots:
    void judgement_data();
    void judgement();
    void stall();
    void slowButSound();
    void outputFor();
    void oneLine();
    void configuredGhostscript();
    void ghostscriptInPath();
    void ghostscriptsFiles();
};

void TestPieces::judgement_data()
{
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("document");
    QTest::addColumn<int>("copy");
    QTest::addColumn<QString>("objection");
    const QString nothing = u"Ghostscript could not open the document or wrote no page of it"_s;
    constexpr int unknown = -1;
    QTest::newRow("all pages") << 3 << 3 << 3 << QString();
    QTest::newRow("one page") << 1 << 1 << 1 << QString();
    QTest::newRow("more pages than libqpdf finds") << 3 << 2 << 3 << QString();
    QTest::newRow("only Ghostscript reads the document") << 3 << unknown << 3 << QString();
    QTest::newRow("a stub") << 0 << 1 << 1 << nothing;
    QTest::newRow("a stub of what nobody reads") << 0 << unknown << 1 << nothing;
    QTest::newRow("Ghostscript did not say") << unknown << 1 << 1 << nothing;
    QTest::newRow("pages lost") << 2 << 3 << 2 << u"the copy has 2 of 3 pages"_s;
    QTest::newRow("pages lost on the way") << 3 << unknown << 2 << u"the copy has 2 of 3 pages"_s;
    QTest::newRow("damaged copy") << 3 << 3 << unknown << u"the copy is damaged"_s;
}

void TestPieces::judgement()
{
    QFETCH(int, written);
    QFETCH(int, document);
    QFETCH(int, copy);
    QFETCH(QString, objection);
    const auto known = [](int pages) {
        return pages < 0 ? std::optional<int>() : std::optional(pages);
    };
    QCOMPARE(
        QString::fromStdString(engine::objectionTo({known(written), known(document), known(copy)})),
        objection);
}

void TestPieces::stall()
{
    using Time = engine::StallWatch::Time;
    engine::StallWatch watch(Time(10));
    QVERIFY(!watch.isStalled(Time(0), 0));
    QVERIFY(!watch.isStalled(Time(9.9), 0));
    QVERIFY(!watch.isStalled(Time(9.95), 1)); // growth
    QVERIFY(!watch.isStalled(Time(19.9), 1));
    QVERIFY(!watch.isStalled(Time(19.94), 0)); // a temporary file was removed
    QVERIFY(watch.isStalled(Time(29.95), 0));
}

void TestPieces::slowButSound()
{
    using Time = engine::StallWatch::Time;
    engine::StallWatch watch(engine::Limits().stall);
    for (int minute = 1; minute <= 24 * 60; ++minute)
        QVERIFY(!watch.isStalled(std::chrono::minutes(minute), std::uintmax_t(minute / 4)));
    QVERIFY(watch.isStalled(Time(25 * 3600), 360));
}

void TestPieces::outputFor()
{
    constexpr std::uintmax_t gibibyte = std::uintmax_t(1) << 30;
    const engine::Limits limits;
    QCOMPARE(limits.outputFor(0), 4 * gibibyte);
    QCOMPARE(limits.outputFor(gibibyte / 16), 4 * gibibyte);
    QCOMPARE(limits.outputFor(gibibyte), 50 * gibibyte);
}

void TestPieces::oneLine()
{
    QCOMPARE(engine::onOneLine("a\nb\r\tc\x1b[0m é"), std::string("a?b??c?[0m é"));
    QCOMPARE(std::string(engine::Failure("a\nb").what()), std::string("a?b"));
    QCOMPARE(engine::Failure("a").status(), 1);
    QCOMPARE(std::string(engine::Failure::ofSystem("a", ENOENT, 127).what()),
             std::string("a: No such file or directory"));
}

void TestPieces::configuredGhostscript()
{
    QCOMPARE(engine::findGhostscript("/opt/gs"), std::string("/opt/gs"));
}

void TestPieces::ghostscriptInPath()
{
    const QByteArray path = qgetenv("PATH");
    QTemporaryDir folder;
    QFile program(folder.filePath(u"gs"_s));
    QVERIFY(program.open(QIODevice::WriteOnly));
    QVERIFY(program.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    qputenv("PATH", "/nowhere::" + folder.path().toUtf8() + ":/bin");
    const std::string found = engine::findGhostscript({});
    qputenv("PATH", "/nowhere");
    const std::string none = engine::findGhostscript({});
    qputenv("PATH", path);
    QCOMPARE(found, program.fileName().toStdString());
    QCOMPARE(none, std::string());
}

void TestPieces::ghostscriptsFiles()
{
    const auto files = engine::systemFilesOf("/opt/gs-10/bin/gs", "/home/zoe");
    const auto has = [&](const char *path) {
        return std::find(files.begin(), files.end(), path) != files.end();
    };
    QVERIFY(has("/opt/gs-10/share/ghostscript"));
    QVERIFY(has("/usr/share/fonts"));
    QVERIFY(has("/home/zoe/.local/share/fonts"));
    for (const char *path :
         {"/", "/etc", "/usr", "/usr/bin", "/home", "/home/zoe", "/tmp", "/proc"})
        QVERIFY2(!has(path), path);
}

QTEST_GUILESS_MAIN(TestPieces)
#include "tst_engine_pieces.moc"
