#include "engine/process/child.h"

#include <QTest>

#include <csignal>
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct GroupKill
{
    pid_t group;
    bool leaderThere; // running, or ended and not yet asked for its status
};
QList<GroupKill> groupKills;

} // namespace

// In the place of the C library's.
extern "C" int kill(pid_t process, int signal) noexcept
{
    if (process < 0) {
        siginfo_t state = {};
        const bool there = waitid(P_PID, id_t(-process), &state, WEXITED | WNOHANG | WNOWAIT) == 0;
        groupKills << GroupKill{-process, there};
    }
    const auto real = reinterpret_cast<int (*)(pid_t, int)>(dlsym(RTLD_NEXT, "kill"));
    return real(process, signal);
}

class TestChild : public QObject
{
    Q_OBJECT

private slots:
    void status();
    void groupOfTheLivingOnly();
    void whomItLeavesBehind();

private:
    static engine::ChildTask task(const std::function<int()> &body);
};

engine::ChildTask TestChild::task(const std::function<int()> &body)
{
    engine::ChildTask task;
    task.body = body;
    task.written = [] { return 0; };
    return task;
}

void TestChild::status()
{
    QCOMPARE(engine::run(task([] { return 7; }), {}).status, 7);
    const auto result = engine::run(task([] { return raise(SIGKILL); }), {});
    QCOMPARE(result.signal, SIGKILL);
    QCOMPARE(result.status, 128 + SIGKILL);
}

// A number whose status has been asked for may be somebody else's.
void TestChild::groupOfTheLivingOnly()
{
    groupKills.clear();
    (void)engine::run(task([] { return 0; }), {});
    QVERIFY(!groupKills.isEmpty());
    for (const GroupKill &one : std::as_const(groupKills))
        QVERIFY(one.leaderThere);
}

void TestChild::whomItLeavesBehind()
{
    int ends[2];
    QCOMPARE(pipe(ends), 0);
    engine::ChildTask parting = task([] {
        if (fork() == 0) {
            for (;;)
                pause();
        }
        return 0;
    });
    constexpr int lifeline = 3;
    parting.channels = {{lifeline, ends[1]}};
    (void)engine::run(parting, {});
    ::close(ends[1]);
    char byte = 0;
    // At the end only when nobody holds the other end any more.
    QCOMPARE(read(ends[0], &byte, 1), ssize_t(0));
    ::close(ends[0]);
}

QTEST_GUILESS_MAIN(TestChild)
#include "tst_child.moc"
