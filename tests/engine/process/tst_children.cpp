// Several children at once.
#include "catchsignals.h"
#include "engine/process/child.h"
#include "engine/system/descriptor.h"
#include "engine/system/failure.h"

#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using engine::Children;
using engine::ChildTask;
using engine::Descriptor;

namespace {

// What a child finds under the numbers below.
constexpr int inbox = 3;
constexpr int outbox = 4;

struct Pipe
{
    Pipe()
    {
        int ends[2] = {-1, -1};
        if (pipe2(ends, O_CLOEXEC) != 0)
            qFatal("no pipe");
        readEnd = Descriptor(ends[0]);
        writeEnd = Descriptor(ends[1]);
    }

    Descriptor readEnd;
    Descriptor writeEnd;
};

bool waitForByte(int file)
{
    char byte = 0;
    return read(file, &byte, 1) == 1;
}

void sendByte(int file)
{
    if (write(file, "", 1) != 1)
        _exit(99);
}

int waitForEver()
{
    for (;;)
        pause();
}

ChildTask task(const std::function<int()> &body)
{
    return {.name = "the child", .body = body};
}

} // namespace

class TestChildren : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void waitedForInAnyOrder();
    void workSideBySide();
    void allAreHeard();
    void oneIsEndedForAnother();
    void endedWithTheirOwner();
    void noProcess();
    void waitedForTwice();
    void expectSuccess_data();
    void expectSuccess();
    void interrupted();
};

void TestChildren::initTestCase()
{
    catchSignals();
}

void TestChildren::waitedForInAnyOrder()
{
    Children children({});
    for (int status = 0; status < 5; ++status)
        QCOMPARE(children.start(task([status] { return status; })), std::size_t(status));
    for (const int number : {3, 0, 4, 1, 2})
        QCOMPARE(children.wait(std::size_t(number)).status, number);
}

// Each can end only if the other one is at work.
void TestChildren::workSideBySide()
{
    const Pipe there;
    const Pipe back;
    Children children({});
    ChildTask first = task([] {
        sendByte(outbox);
        return waitForByte(inbox) ? 1 : 99;
    });
    first.channels = {{inbox, back.readEnd.get()}, {outbox, there.writeEnd.get()}};
    ChildTask second = task([] {
        if (!waitForByte(inbox))
            return 99;
        sendByte(outbox);
        return 2;
    });
    second.channels = {{inbox, there.readEnd.get()}, {outbox, back.writeEnd.get()}};
    const auto one = children.start(std::move(first));
    const auto two = children.start(std::move(second));
    QCOMPARE(children.wait(one).status, 1);
    QCOMPARE(children.wait(two).status, 2);
}

// A child that nobody waits for yet can say more than a pipe holds, and so end before the one that
// is waited for.
void TestChildren::allAreHeard()
{
    const Pipe gone;
    Children children({});
    ChildTask waiting = task([] { return waitForByte(inbox) ? 1 : 99; });
    waiting.channels = {{inbox, gone.readEnd.get()}};
    ChildTask talking = task([] {
        constexpr int reportNumber = 7;
        const std::string text(200'000, 'x');
        if (write(reportNumber, text.data(), text.size()) != ssize_t(text.size()))
            return 99;
        sendByte(outbox);
        return 2;
    });
    talking.channels = {{outbox, gone.writeEnd.get()}};
    const auto first = children.start(std::move(waiting));
    const auto second = children.start(std::move(talking));
    QCOMPARE(children.wait(first).status, 1);
    const engine::ChildResult result = children.wait(second);
    QCOMPARE(result.status, 2);
    QVERIFY(result.report.starts_with("xxx"));
}

// Limits are a child's own.
void TestChildren::oneIsEndedForAnother()
{
    const Pipe pipe;
    Children children({});
    ChildTask greedy = task(waitForEver);
    greedy.written = [] { return 11; };
    greedy.mostWritten = 10;
    ChildTask modest = task([] { return waitForByte(inbox) ? 7 : 99; });
    modest.channels = {{inbox, pipe.readEnd.get()}};
    modest.written = [] { return 10; };
    modest.mostWritten = 10;
    const auto first = children.start(std::move(greedy));
    const auto second = children.start(std::move(modest));
    const engine::ChildResult ended = children.wait(first);
    QCOMPARE(ended.violation, std::string("wrote far more than a copy of the document takes"));
    QCOMPARE(ended.signal, SIGKILL);
    sendByte(pipe.writeEnd.get());
    const engine::ChildResult sound = children.wait(second);
    QCOMPARE(sound.violation, std::string());
    QCOMPARE(sound.status, 7);
}

// The pipe is at its end when nobody holds the other one any more.
void TestChildren::endedWithTheirOwner()
{
    Pipe pipe;
    {
        Children children({});
        for (int count = 0; count < 3; ++count) {
            ChildTask waiting = task(waitForEver);
            waiting.channels = {{outbox, pipe.writeEnd.get()}};
            (void)children.start(std::move(waiting));
        }
    }
    pipe.writeEnd.close();
    QVERIFY(!waitForByte(pipe.readEnd.get()));
    QCOMPARE(waitpid(-1, nullptr, WNOHANG), -1);
    QCOMPARE(errno, ECHILD);
}

void TestChildren::noProcess()
{
    rlimit before = {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none = {0, before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
    Children children({});
    QVERIFY_THROWS_EXCEPTION(engine::Failure, (void)children.start(task([] { return 0; })));
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &before), 0);
    QCOMPARE(children.wait(children.start(task([] { return 3; }))).status, 3);
}

void TestChildren::waitedForTwice()
{
    Children children({});
    const auto number = children.start(task([] { return 0; }));
    (void)children.wait(number);
    QVERIFY_THROWS_EXCEPTION(std::logic_error, (void)children.wait(number));
}

void TestChildren::expectSuccess_data()
{
    using engine::ChildResult;
    QTest::addColumn<ChildResult>("result");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<int>("status");
    QTest::newRow("well") << ChildResult{.name = "Who"} << QString() << 0;
    QTest::newRow("status") << ChildResult{.name = "Who", .status = 3}
                            << QStringLiteral("Who ended with status 3") << 3;
    QTest::newRow("signal") << ChildResult{.name = "Who", .signal = 11, .status = 139}
                            << QStringLiteral("Who was ended by signal 11") << 139;
    QTest::newRow("violation") << ChildResult{.name = "Who",
                                              .signal = 9,
                                              .status = 137,
                                              .violation = "did what it must not"}
                               << QStringLiteral("Who did what it must not") << 1;
}

void TestChildren::expectSuccess()
{
    QFETCH(engine::ChildResult, result);
    QFETCH(QString, reason);
    QFETCH(int, status);
    try {
        engine::expectSuccess(result);
        QCOMPARE(QString(), reason);
    } catch (const engine::Failure &failure) {
        QCOMPARE(QString::fromUtf8(failure.what()), reason);
        QCOMPARE(failure.status(), status);
    }
}

// The last one: who was asked to end stays so.
void TestChildren::interrupted()
{
    Children children({});
    const auto first = children.start(task(waitForEver));
    const auto second = children.start(task(waitForEver));
    QCOMPARE(raise(SIGUSR1), 0); // which QTest leaves alone
    for (const auto number : {first, second}) {
        const engine::ChildResult result = children.wait(number);
        QVERIFY(result.interrupted);
        QCOMPARE(result.signal, SIGKILL);
        QVERIFY_THROWS_EXCEPTION(engine::Failure, engine::expectSuccess(result));
    }
}

QTEST_GUILESS_MAIN(TestChildren)
#include "tst_children.moc"
