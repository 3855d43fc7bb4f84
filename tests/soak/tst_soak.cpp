// One long batch through the window with the real engine: small PDFs of many kinds, broken ones
// between them.

#include "enginecount.h"
#include "src/process.h"
#include "support/files.h"
#include "support/sandbox.h"
#include "support/windowuser.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLineEdit>
#include <QProcess>
#include <QProgressBar>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <unistd.h>

namespace {

constexpr int kinds = 6;             // in originals.ps; the last one is blank
constexpr int brokenEvery = 7;       // no multiple of the kinds
constexpr int secondsPerFile = 20;   // far beyond what a busy machine takes
constexpr qint64 longestGap = 20000; // ms; the aim is 100, which a busy machine can't promise

qint64 residentMemory() // bytes
{
    return contentOf("/proc/self/statm").split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

qsizetype openDescriptors()
{
    return QDir("/proc/self/fd").entryList(QDir::System).size();
}

/// What happens to every brokenEvery-th file.
QByteArray broken(const QByteArray &pdf, int number)
{
    switch (number / brokenEvery % 4) {
    case 0:
        return {};
    case 1:
        return pdf.left(500);
    case 2:
        return QByteArray(8000, 'x');
    default:
        return QByteArray(pdf.size(), '\0');
    }
}

/// How long the event loop left a timer waiting.
class Gaps : public QObject
{
public:
    Gaps()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.callOnTimeout(this, [this] { m_gaps.append(m_clock.restart()); });
        m_clock.start();
        m_timer.start(interval);
    }

    qint64 longest() const { return *std::ranges::max_element(m_gaps); }
    qsizetype over(qint64 limit) const
    {
        return std::ranges::count_if(m_gaps, [limit](qint64 gap) { return gap > limit; });
    }
    qsizetype count() const { return m_gaps.size(); }

private:
    static constexpr int interval = 5; // ms

    QTimer m_timer;
    QElapsedTimer m_clock;
    QList<qint64> m_gaps;
};

} // namespace

class TestSoak : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void oneLongBatch();

private:
    void makeInputs() const;
    void run(const WindowUser &user) const;
    static QString expected(int number);
    QString inputPath(int number) const;

    int m_count = qEnvironmentVariable("CORVANE_SOAK_FILES", "100").toInt();
    Sandbox m_sandbox;
};

QString TestSoak::inputPath(int number) const
{
    return m_sandbox.inputFolder() + QString("/%1.pdf").arg(number, 4, 10, QChar('0'));
}

// Numbers begin at 1, as Ghostscript counts pages. A blank page gives too small a copy.
QString TestSoak::expected(int number)
{
    return number % brokenEvery == 0 || number % kinds == 0 ? failed : succeed;
}

void TestSoak::initTestCase()
{
    QVERIFY(m_count >= 2 * kinds * brokenEvery);
    makeInputs();
}

void TestSoak::makeInputs() const
{
    QProcess ghostscript;
    ghostscript.start(GHOSTSCRIPT, {"-q", "-dBATCH", "-dNOPAUSE", "-dSAFER", "-sDEVICE=pdfwrite",
                                    QString("-dpages=%1").arg(m_count), "-o",
                                    m_sandbox.inputFolder() + "/%04d.pdf", ORIGINALS});
    QVERIFY(ghostscript.waitForFinished(m_count * secondsPerFile * 1000));
    QCOMPARE(ghostscript.exitCode(), 0);
    for (int number = brokenEvery; number <= m_count; number += brokenEvery) {
        const QByteArray pdf = contentOf(inputPath(number));
        write(inputPath(number), broken(pdf, number));
    }
    QVERIFY(QFile::exists(inputPath(m_count)));
}

void TestSoak::run(const WindowUser &user) const
{
    user.run();
    QCOMPARE(user.progressBar()->value(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(user.isIdle(), m_count * secondsPerFile * 1000);
}

void TestSoak::oneLongBatch()
{
    QList<QByteArray> before;
    QStringList inputs;
    for (int number = 1; number <= m_count; ++number) {
        inputs.append(inputPath(number));
        before.append(contentOf(inputPath(number)));
    }

    Process window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const WindowUser user(window);
    user.drop(inputs);
    user.folderEdit()->setText(m_sandbox.outputFolder());
    QCOMPARE(user.table()->rowCount(), m_count);

    const qsizetype descriptors = openDescriptors();
    const qint64 memory = residentMemory();
    EngineCount engines;
    Gaps gaps;
    QElapsedTimer clock;
    clock.start();
    run(user);
    engines.stop();
    const double seconds = double(clock.elapsed()) / 1000;
    const double kilobytes = double(residentMemory() - memory) / 1024;

    qInfo("%d files in %.1f s", m_count, seconds);
    qInfo("memory: %.1f KB more, %.1f KB per file", kilobytes, kilobytes / m_count);
    qInfo("events: longest gap %lld ms of %lld; over 100 ms: %lld", gaps.longest(),
          static_cast<long long>(gaps.count()), static_cast<long long>(gaps.over(100)));
    qInfo("engines: at most %d at a time, looked at %d times", engines.most(), engines.looks());

    QVERIFY(gaps.longest() < longestGap);
    QVERIFY(engines.looks() > m_count);
    QCOMPARE(engines.most(), 1);
    QCOMPARE(EngineCount::now(), 0);
    QCOMPARE(openDescriptors(), descriptors);
    QCOMPARE(m_sandbox.temporaryFiles(), QStringList());

    QStringList copies;
    for (int number = 1; number <= m_count; ++number) {
        QCOMPARE(user.cell(number - 1, WindowUser::path), inputPath(number));
        const QString verdict = user.verdict(number - 1);
        QVERIFY2(verdict == expected(number),
                 qPrintable(QString("%1: %2").arg(number).arg(verdict)));
        QCOMPARE(contentOf(inputPath(number)), before[number - 1]);
        const QString name = QFileInfo(inputPath(number)).fileName();
        const bool whole = contentOf(m_sandbox.outputPath(name)).trimmed().endsWith("%%EOF");
        QCOMPARE(whole, number % brokenEvery != 0); // a blank page is a copy, too
        if (whole)
            copies.append(name);
    }
    QCOMPARE(m_sandbox.outputs(), copies);
}

QTEST_MAIN(TestSoak)
#include "tst_soak.moc"
