// The course of a batch run: how it begins, goes on from file to file, halts and ends.

#include "support/bound.h"
#include "support/modal.h"
#include "windowtest.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QScopeGuard>
#include <QTest>

#include <csignal>
#include <unistd.h>

namespace {

qint64 residentMemory() // bytes
{
    const QByteArray pages = contentOf("/proc/self/statm").split(' ').value(1);
    return pages.toLongLong() * sysconf(_SC_PAGESIZE);
}

} // namespace

class TestBatchCourse : public WindowTest
{
    Q_OBJECT

private slots:
    void emptyTable();
    void noOutputFolder_data();
    void noOutputFolder();
    void oneFile();
    void verdicts_data();
    void verdicts();
    void chainGoesOnAfterFailures();
    void progress();
    void secondBatch();
    void clearedOutputFolderHaltsTheRun();
    void runWithTheTableEmptiedDuringTheRun();
    void runDuringTheRun();
    void missingEngineHaltsTheRun();
    void closingTheWindowLetsTheEngineFinish();
    void engineProcessesStay();
    void descriptorsDoNotPileUp();
};

void TestBatchCourse::emptyTable()
{
    NextMessageBox box;
    m_user->run();
    QVERIFY(box.wasShown());
    QCOMPARE(box.title, QString("Empty input"));
    QCOMPARE(box.text, QString("Please choose files to convert."));
    QCOMPARE(box.icon, int(QMessageBox::Warning));
    QCOMPARE(box.buttons, int(QMessageBox::Ok));
    QCOMPARE(box.parentWindow.data(), m_window.get());
    QCOMPARE(m_user->folderEdit()->text(), m_sandbox->outputFolder());
    QCOMPARE(m_engine->startCount(), 0);
}

void TestBatchCourse::noOutputFolder_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("empty") << "";
    QTest::newRow("missing") << "/no/such/folder";
    QTest::newRow("blank") << " ";
    QTest::newRow("a file") << "/etc/passwd";
}

void TestBatchCourse::noOutputFolder()
{
    QFETCH(QString, folder);
    list({"a.pdf"});
    m_user->folderEdit()->setText(folder);
    NextMessageBox box;
    m_user->run();
    QVERIFY(box.wasShown());
    QCOMPARE(box.title, QString("Invalid order"));
    QCOMPARE(box.text, QString("Please specify an output folder."));
    QCOMPARE(box.icon, int(QMessageBox::Information));
    QCOMPARE(box.buttons, int(QMessageBox::Ok));
    QCOMPARE(box.parentWindow.data(), m_window.get());
    QCOMPARE(m_user->folderEdit()->text(), QString());
    QCOMPARE(m_engine->startCount(), 0);
    QCOMPARE(m_user->verdict(0), QString(none));
}

void TestBatchCourse::oneFile()
{
    m_engine->behave({.gate = true});
    list({"a.pdf"});
    startFirst();
    QCOMPARE(m_user->progressBar()->maximum(), 1);
    QCOMPARE(m_user->progressBar()->value(), 1);
    QCOMPARE(m_user->verdict(0), QString(none));
    QVERIFY(m_user->find<QPushButton>("runButton")->isEnabled());
    letLastThrough();
    QCOMPARE(m_user->verdict(0), QString(succeed));
    QCOMPARE(m_engine->startCount(), 1);
    QCOMPARE(m_sandbox->outputs(), QStringList({"a.pdf"}));
}

void TestBatchCourse::verdicts_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("expected");

    QTest::newRow("nothing written") << -1 << 0 << 0 << failed;
    QTest::newRow("empty") << 0 << 0 << 0 << failed;
    QTest::newRow("5000 bytes") << 5000 << 0 << 0 << failed;
    QTest::newRow("5001 bytes") << 5001 << 0 << 0 << succeed;
    QTest::newRow("100000 bytes") << 100000 << 0 << 0 << succeed;
    QTest::newRow("exit code, output") << 6000 << 3 << 0 << succeed;
    QTest::newRow("exit code, none") << -1 << 1 << 0 << failed;
    QTest::newRow("crash, output") << 6000 << 0 << SIGKILL << succeed;
    QTest::newRow("crash, none") << -1 << 0 << SIGSEGV << failed;
}

void TestBatchCourse::verdicts()
{
    QFETCH(int, bytes);
    QFETCH(int, exitCode);
    QFETCH(int, signal);
    QFETCH(QString, expected);
    m_engine->behave({.bytes = bytes, .exitCode = exitCode, .signal = signal});
    list({"a.pdf"});
    m_user->runToTheEnd();
    QCOMPARE(m_user->verdict(0), expected);
}

void TestBatchCourse::chainGoesOnAfterFailures()
{
    m_engine->behave({.bytes = -1, .exitCode = 1}, "b");
    m_engine->behave({.bytes = -1, .signal = SIGKILL}, "c");
    list({"a.pdf", "b.pdf", "c.pdf", "d.pdf"});
    m_user->runToTheEnd();
    QCOMPARE(m_user->verdicts(), QStringList({succeed, failed, failed, succeed}));
    QCOMPARE(m_engine->inputs(), QStringList({"a", "b", "c", "d"}));
}

void TestBatchCourse::progress()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf", "c.pdf"});
    m_user->run();
    for (int started = 1; started <= 3; ++started) {
        awaitStarts(started);
        QCOMPARE(m_user->progressBar()->maximum(), 3);
        QCOMPARE(m_user->progressBar()->value(), started);
        m_engine->open();
    }
    m_user->awaitEnd();
    QCOMPARE(m_user->progressBar()->maximum(), 3);
}

void TestBatchCourse::secondBatch()
{
    list({"a.pdf", "b.pdf"});
    m_user->runToTheEnd();
    m_engine->behave({.bytes = -1});
    m_user->runToTheEnd();
    QCOMPARE(m_engine->inputs(), QStringList({"a", "b", "a", "b"}));
    QCOMPARE(m_user->verdicts(), QStringList({failed, failed}));
}

void TestBatchCourse::clearedOutputFolderHaltsTheRun()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf"});
    startFirst();
    m_user->folderEdit()->clear();
    NextMessageBox box;
    m_engine->open();
    QTRY_VERIFY_WITH_TIMEOUT(box.wasShown() && !box.title.isEmpty(), bound);
    QCOMPARE(box.title, QString("Invalid order"));
    QCOMPARE(m_user->verdict(0), QString(none));
    QCOMPARE(m_user->progressBar()->value(), 1);

    m_user->folderEdit()->setText(m_sandbox->outputFolder());
    m_user->run();
    QCOMPARE(m_user->verdict(0), QString(succeed));
    awaitStarts(2);
    letLastThrough();
    QCOMPARE(m_user->verdicts(), QStringList({succeed, succeed}));
}

// The count of started files is not reset: the next file listed is judged away and the batch ends.
void TestBatchCourse::runWithTheTableEmptiedDuringTheRun()
{
    m_engine->behave({.gate = true});
    list({"a.pdf"});
    startFirst();
    m_user->press("removeallButton");
    NextMessageBox box;
    m_user->run();
    QCOMPARE(box.title, QString("Empty input"));
    QCOMPARE(m_user->progressBar()->value(), 1);

    list({"b.pdf"});
    m_user->run(); // still in the batch, with one file of one started
    QVERIFY(m_user->isIdle());
    QCOMPARE(m_engine->startCount(), 1);
    QCOMPARE(m_user->verdict(0), QString(none)); // "a.pdf" was judged, and its row is gone

    letThrough(2); // its finish begins a batch
    letLastThrough();
    QCOMPARE(m_user->verdict(0), QString(succeed));
}

// Two engines side by side; each finish advances the batch by one file.
void TestBatchCourse::runDuringTheRun()
{
    m_engine->behave({.bytes = 100, .gate = true});
    list({"a.pdf", "b.pdf", "c.pdf", "d.pdf"});
    startFirst();
    m_user->run();
    QCOMPARE(m_user->verdict(0), QString(failed)); // judged before it was complete
    awaitStarts(2);
    QCOMPARE(m_user->progressBar()->value(), 2);
    for (const int started : {3, 4})
        letThrough(started);
    letLastThrough();
    QCOMPARE(m_user->verdicts(), QStringList({failed, failed, failed, failed}));
    QCOMPARE(m_engine->inputs(), QStringList({"a", "b", "c", "d"}));
    m_engine->behave({.bytes = 100});
    m_engine->open(); // the last one, still at the gate, begins a batch
    QTRY_VERIFY_WITH_TIMEOUT(m_engine->startCount() == 8 && m_user->isIdle(), bound);
}

void TestBatchCourse::missingEngineHaltsTheRun()
{
    const QString engine = QCoreApplication::applicationDirPath() + "/corvgs";
    const QString away = engine + ".away";
    QVERIFY(QFile::rename(engine, away));
    const auto back = qScopeGuard([&] { QFile::rename(away, engine); });
    list({"a.pdf", "b.pdf"});
    m_user->run();
    QVERIFY(QFile::rename(away, engine));
    QCOMPARE(m_user->progressBar()->value(), 1);
    QTest::qWait(0);
    QCOMPARE(m_user->verdicts(), QStringList({none, none}));

    m_user->run();
    QCOMPARE(m_user->verdict(0), QString(failed));
    m_user->awaitEnd();
    QCOMPARE(m_user->verdicts(), QStringList({failed, succeed}));
    QCOMPARE(m_engine->inputs(), QStringList({"b"}));
}

void TestBatchCourse::closingTheWindowLetsTheEngineFinish()
{
    m_engine->behave({.bytes = 7000, .gate = true});
    list({"a.pdf", "b.pdf"});
    startFirst();
    m_window->close();
    m_window.reset();
    QCOMPARE(m_engine->endCount(), 0);
    m_engine->open();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->endCount(), 1, bound);
    QCOMPARE(QFileInfo(m_sandbox->outputPath("a.pdf")).size(), 7000);
    QCOMPARE(m_engine->startCount(), 1);
}

// One process object per started file stays alive until the program ends.
void TestBatchCourse::engineProcessesStay()
{
    struct Deletions : QObject
    {
        bool eventFilter(QObject *watched, QEvent *event) override
        {
            processes +=
                event->type() == QEvent::DeferredDelete && qobject_cast<QProcess *>(watched);
            return false;
        }
        int processes = 0;
    } deletions;
    qApp->installEventFilter(&deletions);
    list({"a.pdf", "b.pdf", "c.pdf"});
    m_user->runToTheEnd();
    m_window.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(deletions.processes, 0);
}

void TestBatchCourse::descriptorsDoNotPileUp()
{
    const auto descriptors = [] { return QDir("/proc/self/fd").entryList(QDir::System).size(); };
    QStringList names;
    for (int i = 0; i < 10; ++i)
        names.append(QString("%1.pdf").arg(i));
    list(names);
    m_user->runToTheEnd();
    const auto after10 = descriptors();
    const auto memoryBefore = residentMemory();
    for (int batch = 0; batch < 99; ++batch)
        m_user->runToTheEnd();
    QCOMPARE(m_engine->startCount(), 1000);
    QCOMPARE(descriptors(), after10);
    // Told, not judged: a process object per file stays until the program ends.
    qInfo("%.1f KB more for each of 990 finished files",
          double(residentMemory() - memoryBefore) / 1024 / 990);
}

QTEST_MAIN(TestBatchCourse)
#include "tst_batchcourse.moc"
