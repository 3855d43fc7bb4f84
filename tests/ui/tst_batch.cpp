#include "core/engineswitches.h"
#include "src/process.h"
#include "support/bound.h"
#include "support/dragdrop.h"
#include "support/fakeengine.h"
#include "support/modal.h"
#include "support/sandbox.h"

#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QScopeGuard>
#include <QSettings>
#include <QTableWidget>
#include <QTest>

#include <csignal>
#include <memory>
#include <unistd.h>

namespace {

// Generous: only a defect lets a test wait this long.

constexpr auto succeed = "Succeed";
constexpr auto failed = "Failed";
constexpr auto none = "-";

qint64 residentMemory() // bytes
{
    const QByteArray pages = readFile("/proc/self/statm").split(' ').value(1);
    return pages.toLongLong() * sysconf(_SC_PAGESIZE);
}

} // namespace

class TestBatch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void emptyTable();
    void noOutputFolder_data();
    void noOutputFolder();
    void oneFile();
    void engineSwitches_data();
    void engineSwitches();
    void commandLine();
    void markFileComesLast();
    void settingsAreReadForEveryFile();
    void verdicts_data();
    void verdicts();
    void chainGoesOnAfterFailures();
    void outputBesideTheInput();
    void sameBaseNames();
    void sameBaseNamesSideBySide();
    void sameOutputByAnotherSpelling();
    void nameIsFreeAgainIfNothingCame();
    void existingFilesStay();
    void danglingLinkIsNotWrittenThrough();
    void progress();
    void secondBatch();
    void filesAddedDuringTheRun();
    void filesRemovedDuringTheRun();
    void verdictOfARemovedFileGoesNowhere();
    void removedFileLetsTheBatchPassOneOver();
    void outputFolderIsTheCurrentOne();
    void clearedOutputFolderHaltsTheRun();
    void runWithTheTableEmptiedDuringTheRun();
    void runDuringTheRun();
    void missingEngineHaltsTheRun();
    void doubleQuoteInTheName();
    void doubleQuotesThatLeaveAnotherPath();
    void hardNames_data();
    void hardNames();
    void closingTheWindowLetsTheEngineFinish();
    void verdictsInASortedTable_data();
    void verdictsInASortedTable();
    void sortDuringTheRun_data();
    void sortDuringTheRun();
    void engineProcessesStay();
    void descriptorsDoNotPileUp();

private:
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return m_window->findChild<Widget *>(name);
    }
    QTableWidget *table() const { return find<QTableWidget>("inputfiletableWidget"); }
    QProgressBar *progressBar() const { return find<QProgressBar>("progressBar"); }
    QLineEdit *folderEdit() const { return find<QLineEdit>("outputfolderEdit"); }
    QString verdict(int row) const;
    QString verdictOf(const QString &name) const;
    QStringList verdictsByRow() const;
    void drop(const QStringList &paths);
    /// Lists one input per name, in this order.
    void list(const QStringList &names);
    void run() { QTest::mouseClick(find<QPushButton>("runButton"), Qt::LeftButton); }
    bool isIdle() const { return progressBar()->value() == 0; }
    void runToTheEnd();
    void sortByColumn(int column, int clicks);

    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<Process> m_window;
};

void TestBatch::init()
{
    m_engine = std::make_unique<FakeEngine>();
    m_sandbox = std::make_unique<Sandbox>();
    m_window = std::make_unique<Process>();
    folderEdit()->setText(m_sandbox->outputFolder());
    m_window->show();
}

void TestBatch::cleanup()
{
    m_window.reset();
    m_sandbox.reset();
    m_engine.reset();
}

QString TestBatch::verdict(int row) const
{
    const QTableWidgetItem *item = table()->item(row, 2);
    return item ? item->text() : QString(none);
}

QString TestBatch::verdictOf(const QString &name) const
{
    for (int row = 0; row < table()->rowCount(); ++row) {
        if (QFileInfo(table()->item(row, 0)->text()).fileName() == name)
            return verdict(row);
    }
    return "(not listed)";
}

QStringList TestBatch::verdictsByRow() const
{
    QStringList all;
    for (int row = 0; row < table()->rowCount(); ++row)
        all.append(verdict(row));
    return all;
}

void TestBatch::drop(const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.prepend(QUrl::fromLocalFile(path)); // a drop lists its files from last to first
    dropUrls(*m_window, urls);
}

void TestBatch::list(const QStringList &names)
{
    QStringList paths;
    for (const QString &name : names)
        paths.append(m_sandbox->addInput(name));
    drop(paths);
}

void TestBatch::runToTheEnd()
{
    run();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
}

void TestBatch::sortByColumn(int column, int clicks)
{
    const QHeaderView *header = table()->horizontalHeader();
    for (int click = 0; click < clicks; ++click) {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                          {header->sectionViewportPosition(column) + 20, header->height() / 2});
    }
    QCOMPARE(header->sortIndicatorSection(), column);
}

void TestBatch::emptyTable()
{
    NextMessageBox box;
    run();
    QVERIFY(box.wasShown());
    QCOMPARE(box.title, QString("Empty input"));
    QCOMPARE(box.text, QString("Please choose files to convert."));
    QCOMPARE(box.icon, int(QMessageBox::Warning));
    QCOMPARE(box.buttons, int(QMessageBox::Ok));
    QCOMPARE(box.parentWindow.data(), m_window.get());
    QCOMPARE(folderEdit()->text(), m_sandbox->outputFolder());
    QCOMPARE(m_engine->startCount(), 0);
}

void TestBatch::noOutputFolder_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("empty") << "";
    QTest::newRow("missing") << "/no/such/folder";
    QTest::newRow("blank") << " ";
    QTest::newRow("a file") << "/etc/passwd";
}

void TestBatch::noOutputFolder()
{
    QFETCH(QString, folder);
    list({"a.pdf"});
    folderEdit()->setText(folder);
    NextMessageBox box;
    run();
    QVERIFY(box.wasShown());
    QCOMPARE(box.title, QString("Invalid order"));
    QCOMPARE(box.text, QString("Please specify an output folder."));
    QCOMPARE(box.icon, int(QMessageBox::Information));
    QCOMPARE(box.buttons, int(QMessageBox::Ok));
    QCOMPARE(box.parentWindow.data(), m_window.get());
    QCOMPARE(folderEdit()->text(), QString());
    QCOMPARE(m_engine->startCount(), 0);
    QCOMPARE(verdict(0), QString(none));
}

void TestBatch::oneFile()
{
    m_engine->behave({.gate = true});
    list({"a.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    QCOMPARE(progressBar()->maximum(), 1);
    QCOMPARE(progressBar()->value(), 1);
    QCOMPARE(verdict(0), QString(none));
    QVERIFY(find<QPushButton>("runButton")->isEnabled());
    m_engine->open();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    QCOMPARE(verdict(0), QString(succeed));
    QCOMPARE(m_engine->startCount(), 1);
    QCOMPARE(m_sandbox->outputs(), QStringList({"a.pdf"}));
}

void TestBatch::engineSwitches_data()
{
    QTest::addColumn<QMap<QString, QString>>("stored");
    QTest::addColumn<QString>("image");
    QTest::addColumn<QString>("fonts");
    QTest::addColumn<QString>("security");
    QTest::addColumn<QString>("pdfa");

    using Stored = QMap<QString, QString>;
    const QString image =
        " -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic"
        " -dColorImageResolution=150 -dAutoFilterColorImages=false -dColorImageFilter=/DCTEncode"
        " -dGrayImageDownsampleType=/Bicubic -dGrayImageResolution=150"
        " -dAutoFilterGrayImages=false -dGrayImageFilter=/DCTEncode -dDownsampleMonoImages=true"
        " -dMonoImageDownsampleType=/Bicubic -dMonoImageResolution=300"
        " -dAutoFilterMonoImages=false -dMonoImageFilter=/FlateEncode";
    const QString fonts = " -dEmbedAllFonts=true -dCompressFonts=true -dSubsetFonts=true";
    QTest::newRow("nothing stored") << Stored() << image << fonts << " -dPermissions=-4"
                                    << "";
    QTest::newRow("everything off") << Stored{{"Image/Image", "No"},
                                              {"Fonts/Fonts", "No"},
                                              {"Secur/Secur", "No"},
                                              {"Annot/Annot", "No"},
                                              {"Annot/PDFA", "Ok"}}
                                    << ""
                                    << ""
                                    << ""
                                    << "";
    QTest::newRow("passwords and PDF/A")
        << Stored{{"Secur/UsrPwd", "u v"},
                  {"Secur/OwrPwd", "o"},
                  {"Secur/AllowCop", "No"},
                  {"Secur/AllowAdd", "No"},
                  {"Annot/PDFA", "Ok"}}
        << image << fonts << " -sUserPassword=u v -sOwnerPassword=o -dPermissions=-52"
        << " -dPDFA";
}

void TestBatch::engineSwitches()
{
    using Stored = QMap<QString, QString>;
    QFETCH(Stored, stored);
    QFETCH(QString, image);
    QFETCH(QString, fonts);
    QFETCH(QString, security);
    QFETCH(QString, pdfa);
    for (const auto &[key, value] : stored.asKeyValueRange())
        m_sandbox->store(key, value);
    QCOMPARE(m_window->getOption(),
             " -q -dBATCH -dMaxBitmap=300000000 -dNOPAUSE -dSAFER -sDEVICE=pdfwrite"
             " -dCompatibilityLevel=1.4" +
                 image + fonts + security + pdfa);
    QCOMPARE(m_window->getOption(), core::engineSwitches(core::engineValues(QSettings(
                                        m_sandbox->settingsFile(), QSettings::IniFormat))));
    QCOMPARE(m_window->getImageOption(), image);
    QCOMPARE(m_window->getSecurityOtion(), security);
}

void TestBatch::commandLine()
{
    list({"report.final.old.pdf"});
    runToTheEnd();
    const QStringList switches = QProcess::splitCommand(m_window->getOption());
    const QStringList expected =
        switches + QStringList({"-sOutputFile=" + m_sandbox->outputPath("report.pdf"), "-f",
                                m_sandbox->inputFolder() + "/report.final.old.pdf"});
    QCOMPARE(switches.size(), qsizetype(7 + 18));
    QCOMPARE(m_engine->starts(), QList<QStringList>({expected}));
}

void TestBatch::markFileComesLast()
{
    QCOMPARE(m_window->getAnnooption(), QString());
    writeFile(m_sandbox->markFile(), 1);
    QCOMPARE(m_window->getAnnooption(), " \"" + m_sandbox->markFile() + '"');
    list({"a.pdf"});
    runToTheEnd();
    QCOMPARE(m_engine->starts().constFirst().last(), m_sandbox->markFile());
}

void TestBatch::settingsAreReadForEveryFile()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    m_sandbox->store("Image/ColorRes", "72");
    m_sandbox->store("Secur/Secur", "No");
    m_engine->open();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 2, bound);
    m_engine->open();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    const QList<QStringList> starts = m_engine->starts();
    QVERIFY(starts[0].contains("-dColorImageResolution=150"));
    QVERIFY(starts[0].contains("-dPermissions=-4"));
    QVERIFY(starts[1].contains("-dColorImageResolution=72"));
    QVERIFY(!starts[1].contains("-dPermissions=-4"));
}

void TestBatch::verdicts_data()
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

void TestBatch::verdicts()
{
    QFETCH(int, bytes);
    QFETCH(int, exitCode);
    QFETCH(int, signal);
    QFETCH(QString, expected);
    m_engine->behave({.bytes = bytes, .exitCode = exitCode, .signal = signal});
    list({"a.pdf"});
    runToTheEnd();
    QCOMPARE(verdict(0), expected);
}

void TestBatch::chainGoesOnAfterFailures()
{
    m_engine->behave({.bytes = -1, .exitCode = 1}, "b");
    m_engine->behave({.bytes = -1, .signal = SIGKILL}, "c");
    list({"a.pdf", "b.pdf", "c.pdf", "d.pdf"});
    runToTheEnd();
    QCOMPARE(verdictsByRow(), QStringList({succeed, failed, failed, succeed}));
    QCOMPARE(m_engine->inputs(), QStringList({"a", "b", "c", "d"}));
}

void TestBatch::outputBesideTheInput()
{
    folderEdit()->setText(m_sandbox->inputFolder());
    list({"a.pdf"});
    const QByteArray before = readFile(m_sandbox->inputFolder() + "/a.pdf");
    runToTheEnd();
    QVERIFY(QFile::exists(m_sandbox->inputFolder() + "/a0.pdf"));
    runToTheEnd();
    QVERIFY(QFile::exists(m_sandbox->inputFolder() + "/a00.pdf"));
    QCOMPARE(readFile(m_sandbox->inputFolder() + "/a.pdf"), before);
}

void TestBatch::sameBaseNames()
{
    list({"x.pdf", "sub/x.pdf", "x.old.pdf"});
    runToTheEnd();
    QCOMPARE(verdictsByRow(), QStringList({succeed, succeed, succeed}));
    QCOMPARE(m_sandbox->outputs(), QStringList({"x.pdf", "x0.pdf", "x00.pdf"}));
}

// The second engine starts before the first has made its output.
void TestBatch::sameBaseNamesSideBySide()
{
    m_engine->behave({.bytes = -1, .gate = true});
    list({"x.pdf", "sub/x.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 2, bound);
    const QList<QStringList> starts = m_engine->starts();
    QVERIFY(starts[0].contains("-sOutputFile=" + m_sandbox->outputPath("x.pdf")));
    QVERIFY(starts[1].contains("-sOutputFile=" + m_sandbox->outputPath("x0.pdf")));
    m_window.reset();
    m_engine->open();
    m_engine->open();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->endCount(), 2, bound);
}

// The folder's text may change between two files; the place it names is what counts.
void TestBatch::sameOutputByAnotherSpelling()
{
    m_engine->behave({.bytes = -1, .gate = true});
    list({"x.pdf", "sub/x.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    folderEdit()->setText(m_sandbox->outputFolder() + '/');
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 2, bound);
    QVERIFY(
        m_engine->starts()[1].contains("-sOutputFile=" + m_sandbox->outputFolder() + "//x0.pdf"));
    m_window.reset();
    m_engine->open();
    m_engine->open();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->endCount(), 2, bound);
}

void TestBatch::nameIsFreeAgainIfNothingCame()
{
    m_engine->behave({.bytes = -1});
    list({"x.pdf", "sub/x.pdf"});
    runToTheEnd();
    QCOMPARE(verdictsByRow(), QStringList({failed, failed}));
    QVERIFY(m_engine->starts()[1].contains("-sOutputFile=" + m_sandbox->outputPath("x.pdf")));
}

void TestBatch::existingFilesStay()
{
    writeFile(m_sandbox->outputPath("a.pdf"), 123);
    QVERIFY(QDir(m_sandbox->outputFolder()).mkdir("a0.pdf"));
    list({"a.pdf"});
    runToTheEnd();
    QCOMPARE(QFileInfo(m_sandbox->outputPath("a.pdf")).size(), 123);
    QVERIFY(QFileInfo(m_sandbox->outputPath("a0.pdf")).isDir());
    QVERIFY(QFile::exists(m_sandbox->outputPath("a00.pdf")));
    QCOMPARE(verdict(0), QString(succeed));
}

void TestBatch::danglingLinkIsNotWrittenThrough()
{
    const QString elsewhere = m_sandbox->inputFolder() + "/elsewhere";
    QVERIFY(QFile::link(elsewhere, m_sandbox->outputPath("a.pdf")));
    list({"a.pdf"});
    runToTheEnd();
    QVERIFY(!QFile::exists(elsewhere));
    QVERIFY(QFile::exists(m_sandbox->outputPath("a0.pdf")));
}

void TestBatch::progress()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf", "c.pdf"});
    run();
    for (int started = 1; started <= 3; ++started) {
        QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), started, bound);
        QCOMPARE(progressBar()->maximum(), 3);
        QCOMPARE(progressBar()->value(), started);
        m_engine->open();
    }
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    QCOMPARE(progressBar()->maximum(), 3);
}

void TestBatch::secondBatch()
{
    list({"a.pdf", "b.pdf"});
    runToTheEnd();
    m_engine->behave({.bytes = -1});
    runToTheEnd();
    QCOMPARE(m_engine->inputs(), QStringList({"a", "b", "a", "b"}));
    QCOMPARE(verdictsByRow(), QStringList({failed, failed}));
}

void TestBatch::filesAddedDuringTheRun()
{
    m_engine->behave({.gate = true});
    list({"a.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    list({"b.pdf"});
    QCOMPARE(progressBar()->maximum(), 1);
    m_engine->open();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 2, bound);
    QCOMPARE(progressBar()->maximum(), 2);
    QCOMPARE(progressBar()->value(), 2);
    m_engine->open();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    QCOMPARE(verdictsByRow(), QStringList({succeed, succeed}));
}

void TestBatch::filesRemovedDuringTheRun()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf", "c.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    table()->removeRow(2);
    table()->removeRow(1);
    m_engine->open();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    QCOMPARE(verdictsByRow(), QStringList({succeed}));
    QCOMPARE(m_engine->inputs(), QStringList({"a"}));
}

void TestBatch::verdictOfARemovedFileGoesNowhere()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    table()->removeRow(0);
    m_engine->open();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    QCOMPARE(verdictsByRow(), QStringList({none}));
}

// The count of started files says which row is next, and the rows have moved up.
void TestBatch::removedFileLetsTheBatchPassOneOver()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf", "c.pdf", "d.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    m_engine->open();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 2, bound);
    table()->removeRow(0);
    m_engine->open();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 3, bound);
    m_engine->open();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    QCOMPARE(m_engine->inputs(), QStringList({"a", "b", "d"}));
    QCOMPARE(verdictsByRow(), QStringList({succeed, none, succeed}));
}

void TestBatch::outputFolderIsTheCurrentOne()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    folderEdit()->setText(m_sandbox->inputFolder());
    m_engine->open();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 2, bound);
    m_engine->open();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    QCOMPARE(verdictsByRow(), QStringList({succeed, succeed}));
    QCOMPARE(m_sandbox->outputs(), QStringList({"a.pdf"}));
    QVERIFY(QFile::exists(m_sandbox->inputFolder() + "/b0.pdf"));
}

void TestBatch::clearedOutputFolderHaltsTheRun()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    folderEdit()->clear();
    NextMessageBox box;
    m_engine->open();
    QTRY_VERIFY_WITH_TIMEOUT(box.wasShown() && !box.title.isEmpty(), bound);
    QCOMPARE(box.title, QString("Invalid order"));
    QCOMPARE(verdict(0), QString(none));
    QCOMPARE(progressBar()->value(), 1);

    folderEdit()->setText(m_sandbox->outputFolder());
    run();
    QCOMPARE(verdict(0), QString(succeed));
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 2, bound);
    m_engine->open();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    QCOMPARE(verdictsByRow(), QStringList({succeed, succeed}));
}

// The count of started files is not reset: the next file listed is judged away and the batch ends.
void TestBatch::runWithTheTableEmptiedDuringTheRun()
{
    m_engine->behave({.gate = true});
    list({"a.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    QTest::mouseClick(find<QPushButton>("removeallButton"), Qt::LeftButton);
    NextMessageBox box;
    run();
    QCOMPARE(box.title, QString("Empty input"));
    QCOMPARE(progressBar()->value(), 1);

    list({"b.pdf"});
    run(); // still in the batch, with one file of one started
    QVERIFY(isIdle());
    QCOMPARE(m_engine->startCount(), 1);
    QCOMPARE(verdict(0), QString(none)); // "a.pdf" was judged, and its row is gone

    m_engine->open(); // its finish begins a batch
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 2, bound);
    m_engine->open();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    QCOMPARE(verdict(0), QString(succeed));
}

// Two engines side by side; each finish advances the batch by one file.
void TestBatch::runDuringTheRun()
{
    m_engine->behave({.bytes = 100, .gate = true});
    list({"a.pdf", "b.pdf", "c.pdf", "d.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    run();
    QCOMPARE(verdict(0), QString(failed)); // judged before it was complete
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 2, bound);
    QCOMPARE(progressBar()->value(), 2);
    for (const int started : {3, 4}) {
        m_engine->open();
        QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), started, bound);
    }
    m_engine->open();
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    QCOMPARE(verdictsByRow(), QStringList({failed, failed, failed, failed}));
    QCOMPARE(m_engine->inputs(), QStringList({"a", "b", "c", "d"}));
    m_engine->behave({.bytes = 100});
    m_engine->open(); // the last one, still at the gate, begins a batch
    QTRY_VERIFY_WITH_TIMEOUT(m_engine->startCount() == 8 && isIdle(), bound);
}

void TestBatch::missingEngineHaltsTheRun()
{
    const QString engine = QCoreApplication::applicationDirPath() + "/corvgs";
    const QString away = engine + ".away";
    QVERIFY(QFile::rename(engine, away));
    const auto back = qScopeGuard([&] { QFile::rename(away, engine); });
    list({"a.pdf", "b.pdf"});
    run();
    QVERIFY(QFile::rename(away, engine));
    QCOMPARE(progressBar()->value(), 1);
    QTest::qWait(0);
    QCOMPARE(verdictsByRow(), QStringList({none, none}));

    run();
    QCOMPARE(verdict(0), QString(failed));
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    QCOMPARE(verdictsByRow(), QStringList({failed, succeed}));
    QCOMPARE(m_engine->inputs(), QStringList({"b"}));
}

// The line is bent: the engine looks for another file and names another output.
void TestBatch::doubleQuoteInTheName()
{
    list({"a \"b\" c.pdf", "d.pdf"});
    runToTheEnd();
    QCOMPARE(verdictsByRow(), QStringList({failed, succeed}));
    const QStringList first = m_engine->starts().constFirst();
    QVERIFY(!first.contains(m_sandbox->inputFolder() + "/a \"b\" c.pdf"));
    QVERIFY(QFile::exists(m_sandbox->inputFolder() + "/a \"b\" c.pdf"));
}

// The quotes are lost on the way, and what is left is a path of its own.
void TestBatch::doubleQuotesThatLeaveAnotherPath()
{
    const QString other = m_sandbox->addInput("a.xy.pdf");
    list({"a.x\"\"y.pdf"});
    runToTheEnd();
    QCOMPARE(m_engine->starts().constFirst().last(), other);
    QCOMPARE(m_sandbox->outputs(), QStringList({"a.pdf"}));
    QVERIFY(QFile::exists(other));
}

void TestBatch::hardNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("output");

    const auto row = [](const char *what, const QString &base) {
        QTest::newRow(what) << base + ".pdf" << base + ".pdf";
    };
    row("blanks", " two  blanks ");
    row("shell", "$HOME;&|<>()`id`*?~#!");
    row("single quotes", "it's");
    row("leading dash", "-dNOSAFER");
    row("per cent", "50% off %d %%");
    row("non-ASCII", "Zoë – 報告書 №7 🔒");
    row("brackets", "[x] {y} \\z");
    row("line break", "a\nb");
    row("longest", QString(246, 'x'));
    QTest::newRow("several dots") << "a.b.c.pdf"
                                  << "a.pdf";
    QTest::newRow("hidden") << ".hidden.pdf"
                            << ".pdf";
    QTest::newRow("upper case") << "A.PDF"
                                << "A.pdf";
}

void TestBatch::hardNames()
{
    QFETCH(QString, name);
    QFETCH(QString, output);
    list({name});
    runToTheEnd();
    QCOMPARE(verdict(0), QString(succeed));
    const QStringList arguments = m_engine->starts().constFirst();
    QCOMPARE(arguments.last(), m_sandbox->inputFolder() + '/' + name);
    QCOMPARE(arguments[arguments.size() - 3], "-sOutputFile=" + m_sandbox->outputPath(output));
    QCOMPARE(m_sandbox->outputs(), QStringList({output}));
}

void TestBatch::closingTheWindowLetsTheEngineFinish()
{
    m_engine->behave({.bytes = 7000, .gate = true});
    list({"a.pdf", "b.pdf"});
    run();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), 1, bound);
    m_window->close();
    m_window.reset();
    QCOMPARE(m_engine->endCount(), 0);
    m_engine->open();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->endCount(), 1, bound);
    QCOMPARE(QFileInfo(m_sandbox->outputPath("a.pdf")).size(), 7000);
    QCOMPARE(m_engine->startCount(), 1);
}

void TestBatch::verdictsInASortedTable_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("clicks");
    for (int column = 0; column < 3; ++column) {
        for (int clicks = 1; clicks <= 2; ++clicks)
            QTest::addRow("column %d, %d click(s)", column, clicks) << column << clicks;
    }
}

// A verdict may move its row; nobody's turn is lost or doubled, and every verdict is its file's.
void TestBatch::verdictsInASortedTable()
{
    QFETCH(int, column);
    QFETCH(int, clicks);
    const QStringList bad = {"1.pdf", "4.pdf", "5.pdf"};
    const QStringList names = {"4.pdf", "2.pdf", "7.pdf", "1.pdf", "0.pdf", "5.pdf", "3.pdf"};
    list(names);
    sortByColumn(column, clicks);
    for (int batch = 0; batch < 3; ++batch) {
        // The verdicts change from batch to batch, and the order by result with them.
        for (const QString &name : names)
            m_engine->behave({.bytes = bad.contains(name) == (batch % 2 == 0) ? 10 : 6000},
                             name.chopped(4));
        runToTheEnd();
        QStringList converted = m_engine->inputs().mid(7 * batch);
        QCOMPARE(converted.size(), 7);
        converted.sort();
        QCOMPARE(converted, QStringList({"0", "1", "2", "3", "4", "5", "7"}));
        for (const QString &name : names)
            QCOMPARE(verdictOf(name),
                     QString(bad.contains(name) == (batch % 2 == 0) ? failed : succeed));
    }
}

void TestBatch::sortDuringTheRun_data()
{
    verdictsInASortedTable_data();
}

void TestBatch::sortDuringTheRun()
{
    QFETCH(int, column);
    QFETCH(int, clicks);
    const QStringList bad = {"1.pdf", "4.pdf", "5.pdf"};
    m_engine->behave({.gate = true});
    for (const QString &name : bad)
        m_engine->behave({.bytes = 10, .gate = true}, name.chopped(4));
    const QStringList names = {"4.pdf", "2.pdf", "7.pdf", "1.pdf", "0.pdf", "5.pdf", "3.pdf"};
    list(names);
    run();
    for (int started = 1; started <= 7; ++started) {
        QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), started, bound);
        if (started == 3)
            sortByColumn(column, clicks);
        m_engine->open();
    }
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(), bound);
    QStringList converted = m_engine->inputs();
    converted.sort();
    QCOMPARE(converted, QStringList({"0", "1", "2", "3", "4", "5", "7"}));
    for (const QString &name : names)
        QCOMPARE(verdictOf(name), QString(bad.contains(name) ? failed : succeed));
}

// One process object per started file stays alive until the program ends.
void TestBatch::engineProcessesStay()
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
    runToTheEnd();
    m_window.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(deletions.processes, 0);
}

void TestBatch::descriptorsDoNotPileUp()
{
    const auto descriptors = [] { return QDir("/proc/self/fd").entryList(QDir::System).size(); };
    QStringList names;
    for (int i = 0; i < 10; ++i)
        names.append(QString("%1.pdf").arg(i));
    list(names);
    runToTheEnd();
    const auto after10 = descriptors();
    const auto memoryBefore = residentMemory();
    for (int batch = 0; batch < 99; ++batch)
        runToTheEnd();
    QCOMPARE(m_engine->startCount(), 1000);
    QCOMPARE(descriptors(), after10);
    // Told, not judged: a process object per file stays until the program ends.
    qInfo("%.1f KB more for each of 990 finished files",
          double(residentMemory() - memoryBefore) / 1024 / 990);
}

QTEST_MAIN(TestBatch)
#include "tst_batch.moc"
