// What a process can call that reads documents and starts no program.
#include "engine/confinement/confinement.h"
#include "engine/process/child.h"

#include <QTest>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Attempt = std::function<bool()>;

constexpr int could = 10;
constexpr int denied = 20;
constexpr int otherwise = 30;

// Attempts answer by what the system says: a call that fails for another reason was not denied.
int resultOf(const Attempt &attempt)
{
    errno = 0;
    if (attempt())
        return could;
    return errno == EPERM ? denied : otherwise;
}

int runAttempt(const Attempt &attempt, bool confined)
{
    return engine::run({.body =
                            [=] {
                                if (confined)
                                    engine::confine({});
                                return resultOf(attempt);
                            }},
                       {})
        .status;
}

} // namespace

Q_DECLARE_METATYPE(Attempt)

class TestWorkCalls : public QObject
{
    Q_OBJECT

private slots:
    void denied_data();
    void denied();
    void allowed_data();
    void allowed();
};

void TestWorkCalls::denied_data()
{
    QTest::addColumn<Attempt>("attempt");
    const auto add = [](const char *name, const Attempt &attempt) {
        QTest::newRow(name) << attempt;
    };
    add("open", [] { return open("/dev/null", O_RDONLY) >= 0; });
    add("access", [] { return access("/dev/null", F_OK) == 0; });
    add("read a link", [] {
        char target[256];
        return readlink("/proc/self/exe", target, sizeof target) > 0;
    });
    add("change the folder", [] { return chdir("/") == 0; });
    add("make a folder", [] { return mkdir("/tmp", 0700) == 0 || errno == EEXIST; });
    add("socket", [] { return socket(AF_UNIX, SOCK_STREAM, 0) >= 0; });
    add("pipe", [] {
        int ends[2];
        return pipe(ends) == 0;
    });
    add("fork", [] { return fork() >= 0; });
    add("start", [] {
        execl("/bin/true", "true", nullptr);
        return false;
    });
    add("signal", [] { return kill(getppid(), 0) == 0; });
    add("limit", [] {
        rlimit limit = {};
        return getrlimit(RLIMIT_CORE, &limit) == 0 && setrlimit(RLIMIT_CORE, &limit) == 0;
    });
    add("watch", [] { return inotify_init() >= 0; });
    add("memory file", [] { return memfd_create("x", 0) >= 0; });
    add("mode of an open file", [] { return fchmod(STDOUT_FILENO, 0600) == 0; });
}

void TestWorkCalls::denied()
{
#ifdef CORVANE_SANITIZE
    QSKIP("the sanitizer takes more calls");
#endif
    QFETCH(Attempt, attempt);
    QCOMPARE(runAttempt(attempt, true), ::denied);
    const int unconfined = runAttempt(attempt, false);
    QVERIFY(unconfined != ::denied);
}

void TestWorkCalls::allowed_data()
{
    QTest::addColumn<Attempt>("attempt");
    const auto add = [](const char *name, const Attempt &attempt) {
        QTest::newRow(name) << attempt;
    };
    add("size of an open file", [] {
        struct stat entry = {};
        return fstat(STDOUT_FILENO, &entry) == 0;
    });
    add("copy of a descriptor", [] { return dup(STDOUT_FILENO) >= 0; });
    add("memory", [] {
        return mmap(nullptr, 1 << 20, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) !=
               MAP_FAILED;
    });
    add("write", [] { return write(STDOUT_FILENO, "", 0) == 0; });
    add("its own limits, to read them", [] {
        rlimit limit = {};
        return getrlimit(RLIMIT_CORE, &limit) == 0;
    });
}

void TestWorkCalls::allowed()
{
    QFETCH(Attempt, attempt);
    QCOMPARE(runAttempt(attempt, true), could);
}

QTEST_GUILESS_MAIN(TestWorkCalls)
#include "tst_workcalls.moc"
