// Signals that ask corvgs to end.
#include "faults.h"
#include "samples.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

// And can be caught, and is for programs to use.
bool endsByDefault(int signal)
{
    constexpr int others[] = {SIGKILL, SIGPIPE, SIGCHLD, SIGURG,  SIGWINCH,
                              SIGSTOP, SIGTSTP, SIGTTIN, SIGTTOU, SIGCONT};
    const bool reserved = signal > SIGSYS && signal < SIGRTMIN;
    return !reserved && std::find(std::begin(others), std::end(others), signal) == std::end(others);
}

} // namespace

class TestSignals : public QObject
{
    Q_OBJECT

private slots:
    void terminated_data();
    void terminated();
    void ignoredSignalStaysIgnored();
};

void TestSignals::terminated_data()
{
    QTest::addColumn<int>("signal");
    for (int signal = 1; signal < NSIG; ++signal) {
        if (endsByDefault(signal))
            QTest::addRow("%d, %s", signal, strsignal(signal)) << signal;
    }
}

void TestSignals::terminated()
{
    QFETCH(int, signal);
    Bench bench(samplePdf());
    bench.setStandin(u"wait"_s);
    const auto process = bench.start(lineOf(bench), Bench::driver(Bench::Confined));
    QVERIFY(process->waitForReadyRead());
    QCOMPARE(bench.engineCount(), 1);
    sendSignal(process->processId(), signal);
    QVERIFY(process->waitForFinished());
    verifyFailure({process->exitCode(), {}, process->readAllStandardError()}, "ended by a signal",
                  128 + signal);
    verifyNothingLeft(bench);
}

void TestSignals::ignoredSignalStaysIgnored()
{
    Bench bench(samplePdf());
    bench.setStandin(u"wait"_s);
    const QString driver = Bench::driver(Bench::Confined);
    const auto process = bench.start(
        QStringList{u"-c"_s, u"trap '' HUP; exec \"$0\" \"$@\""_s, driver} + lineOf(bench),
        u"/bin/sh"_s);
    QVERIFY(process->waitForReadyRead());
    static const QRegularExpression ignored(u"^SigIgn:\\s*([0-9a-f]+)$"_s,
                                            QRegularExpression::MultilineOption);
    const QString state = QString::fromLatin1(
        contentOf("/proc/"_L1 + QString::number(process->processId()) + "/status"_L1));
    QCOMPARE(ignored.match(state).captured(1).toULongLong(nullptr, 16) & 0xf, 1ULL << (SIGHUP - 1));
    sendSignal(process->processId(), SIGHUP);
    sendSignal(process->processId(), SIGTERM);
    QVERIFY(process->waitForFinished());
    QCOMPARE(process->exitCode(), 128 + SIGTERM);
    verifyNothingLeft(bench);
}

QTEST_GUILESS_MAIN(TestSignals)
#include "tst_signals.moc"
