#include "engine/process/messagewriter.h"
#include "engine/process/relay.h"

#include <QScopeGuard>
#include <QTest>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr std::size_t total = 200'000; // bytes; a pipe holds 65,536

struct Pipe
{
    Pipe() { ok = pipe(ends) == 0; }
    ~Pipe()
    {
        closeWriteEnd();
        close(ends[0]);
    }
    void closeWriteEnd()
    {
        if (ends[1] >= 0)
            close(ends[1]);
        ends[1] = -1;
    }
    [[nodiscard]] std::string text() const
    {
        std::string all;
        char piece[4096];
        for (ssize_t count = 0; (count = read(ends[0], piece, sizeof piece)) > 0;)
            all.append(piece, std::size_t(count));
        return all;
    }
    [[nodiscard]] bool isFull() const
    {
        pollfd room = {ends[1], POLLOUT, 0};
        return poll(&room, 1, 0) == 0;
    }
    std::size_t drain(std::size_t piece = 65536, std::chrono::milliseconds pause = 0ms) const
    {
        std::string bytes(piece, '\0');
        std::size_t sum = 0;
        for (ssize_t count = 0; (count = read(ends[0], bytes.data(), piece)) > 0;) {
            sum += std::size_t(count);
            if (pause > 0ms)
                std::this_thread::sleep_for(pause);
        }
        return sum;
    }

    int ends[2] = {-1, -1};
    bool ok = false;
};

std::atomic<int> interruptions = 0;

void interrupt(int)
{
    ++interruptions;
}

} // namespace

class TestRelay : public QObject
{
    Q_OBJECT

private slots:
    void handsOnTheBeginning_data();
    void handsOnTheBeginning();
    void seesPhrasesInAll();
    void keepsTheBeginning();
    void countsMarks();
    void silentReader();
    void readerByDrops();
    void interrupted();
};

void TestRelay::handsOnTheBeginning_data()
{
    QTest::addColumn<int>("pieces"); // of 4096 bytes; more than a pipe holds
    QTest::addColumn<bool>("all");
    QTest::newRow("nothing") << 0 << true;
    QTest::newRow("up to the bound") << 4 << true;
    QTest::newRow("a piece more") << 5 << false;
    QTest::newRow("a flood") << 1000 << false;
}

void TestRelay::handsOnTheBeginning()
{
    QFETCH(int, pieces);
    QFETCH(bool, all);
    Pipe pipe;
    QVERIFY(pipe.ok);
    engine::Relay relay =
        engine::Relay::to(engine::MessageWriter(pipe.ends[1], 60s), "somebody", {});
    const std::string text(4096, 'x');
    for (int piece = 0; piece < pieces; ++piece) {
        QCOMPARE(write(relay.writeEnd(), text.data(), text.size()), ssize_t(text.size()));
        relay.takeAll();
    }
    relay.closeWriteEnd();
    relay.takeAll();
    QCOMPARE(relay.readEnd(), -1);
    QCOMPARE(relay.taken(), std::size_t(pieces) * text.size());
    pipe.closeWriteEnd();
    const std::string note = "\n[somebody says more, which is left out]\n";
    const std::string handedOn =
        all ? std::string(std::size_t(pieces) * text.size(), 'x')
            : std::string(std::size_t(engine::Relay::handedOn), 'x') + note;
    QCOMPARE(pipe.text(), handedOn);
}

// Far behind what is handed on, and in two pieces.
void TestRelay::seesPhrasesInAll()
{
    engine::Relay relay = engine::Relay::to({}, "somebody", {"", "no room", "no doubt"});
    std::string text = std::string(50'000, 'x') + "there is no ro";
    for (const std::string &piece : {text, std::string("om left")}) {
        QVERIFY(!relay.hasSeen("no room"));
        QCOMPARE(write(relay.writeEnd(), piece.data(), piece.size()), ssize_t(piece.size()));
        relay.takeAll();
    }
    QVERIFY(relay.hasSeen("no room"));
    QVERIFY(!relay.hasSeen("no doubt"));
    QVERIFY(!relay.hasSeen(""));
    QVERIFY(!relay.hasSeen("left"));
}

void TestRelay::keepsTheBeginning()
{
    engine::Relay relay = engine::Relay::keeping(5);
    QCOMPARE(write(relay.writeEnd(), "abc", 3), ssize_t(3));
    relay.takeAll();
    QCOMPARE(write(relay.writeEnd(), "defgh", 5), ssize_t(5));
    relay.takeAll();
    QCOMPARE(relay.kept(), std::string("abcde"));
    QVERIFY(relay.readEnd() >= 0);
}

void TestRelay::countsMarks()
{
    engine::Relay relay = engine::Relay::keeping(5);
    const std::string text = "a\006\006b\006";
    QCOMPARE(write(relay.writeEnd(), text.data(), text.size()), ssize_t(text.size()));
    relay.takeAll();
    QCOMPARE(relay.kept(), std::string("ab"));
    QCOMPARE(relay.marks(), std::uintmax_t(3));
}

void TestRelay::silentReader()
{
    Pipe pipe;
    QVERIFY(pipe.ok);
    engine::MessageWriter reader(pipe.ends[1], 1ms);
    reader.tell(std::string(total, 'x'));
    QVERIFY(pipe.isFull());
    fcntl(pipe.ends[0], F_SETFL, O_NONBLOCK);
    QVERIFY(pipe.drain() < total);
    reader.tell("more");
    QCOMPARE(pipe.drain(), std::size_t(0));
}

// Each piece comes through in time, but all of them would take many times the patience.
void TestRelay::readerByDrops()
{
    Pipe pipe;
    QVERIFY(pipe.ok);
    std::size_t arrived = 0;
    std::thread slow([&] { arrived = pipe.drain(4096, 40ms); });
    engine::MessageWriter(pipe.ends[1], 200ms).tell(std::string(total, 'x'));
    pipe.closeWriteEnd();
    slow.join();
    QVERIFY(arrived > 0);
    QVERIFY2(arrived < total, qPrintable(QString::number(arrived)));
}

void TestRelay::interrupted()
{
    struct sigaction action = {};
    struct sigaction before = {};
    action.sa_handler = interrupt;
    sigaction(SIGUSR1, &action, &before);
    const auto restore = qScopeGuard([&] { sigaction(SIGUSR1, &before, nullptr); });

    Pipe pipe;
    QVERIFY(pipe.ok);
    std::size_t arrived = 0;
    std::thread slow([&, teller = pthread_self()] {
        while (!pipe.isFull())
            std::this_thread::yield();
        while (interruptions < 100) {
            pthread_kill(teller, SIGUSR1);
            std::this_thread::yield();
        }
        arrived = pipe.drain();
    });
    engine::MessageWriter(pipe.ends[1], 60s).tell(std::string(total, 'x'));
    pipe.closeWriteEnd();
    slow.join();
    QCOMPARE(arrived, total);
}

QTEST_GUILESS_MAIN(TestRelay)
#include "tst_relay.moc"
