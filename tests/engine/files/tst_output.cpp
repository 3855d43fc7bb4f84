// The name of the copy and its draft, whoever else wants the name.
#include "engine/files/draft.h"
#include "engine/files/output.h"
#include "engine/files/runfolder.h"
#include "engine/system/failure.h"
#include "engine/system/writing.h"
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <cstdio>
#include <dlfcn.h>
#include <functional>
#include <unistd.h>

using namespace Qt::StringLiterals;
using engine::Draft;
using engine::Output;

namespace {

std::function<void()> beforeExchange; // somebody else, at the last moment
int exchangeError = 0;

} // namespace

// In the place of the C library's.
extern "C" int renameat2(int folder, const char *from, int otherFolder, const char *to,
                         unsigned flags) noexcept
{
    if (exchangeError != 0) {
        errno = exchangeError;
        return -1;
    }
    if (const auto act = std::exchange(beforeExchange, nullptr))
        act();
    using Call = int (*)(int, const char *, int, const char *, unsigned);
    return reinterpret_cast<Call>(dlsym(RTLD_NEXT, "renameat2"))(folder, from, otherFolder, to,
                                                                 flags);
}

class TestOutput : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void holdsTheName();
    void takenAtTheStart_data();
    void takenAtTheStart();
    void replaced_data();
    void replaced();
    void takenInTheEnd_data();
    void takenInTheEnd();
    void exchangeFails();
    void draftNameTaken();

private:
    [[nodiscard]] QString path(const QString &name = u"copy"_s) const;
    [[nodiscard]] QStringList names() const;
    [[nodiscard]] QStringList recorded() const;
    [[nodiscard]] Output output() const;
    static int statusOf(const std::function<void()> &act);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<engine::RunFolder> m_own;
    std::unique_ptr<engine::Record> m_record;
};

void TestOutput::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_folder->path()).mkdir(u"out"_s));
    m_own = std::make_unique<engine::RunFolder>(m_folder->path().toStdString());
    m_record = std::make_unique<engine::Record>(m_own->path(), m_own->descriptor());
}

void TestOutput::cleanup()
{
    beforeExchange = nullptr;
    exchangeError = 0;
    QCOMPARE(recorded(), QStringList());
}

QString TestOutput::path(const QString &name) const
{
    return m_folder->filePath("out/"_L1 + name);
}

QStringList TestOutput::names() const
{
    return QDir(path({})).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                    QDir::NoDotAndDotDot);
}

QStringList TestOutput::recorded() const
{
    return QDir(QString::fromStdString(m_own->path()))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

Output TestOutput::output() const
{
    return Output(path().toStdString(), *m_record);
}

// Of the failure; 0 if there is none.
int TestOutput::statusOf(const std::function<void()> &act)
{
    try {
        act();
        return 0;
    } catch (const engine::Failure &failure) {
        return failure.status();
    }
}

void TestOutput::holdsTheName()
{
    {
        const Output held = output();
        QCOMPARE(names(), QStringList{u"copy"_s});
        QCOMPARE(contentOf(path()), QByteArray());
        QCOMPARE(recorded(), (QStringList{u"placeholder"_s, u"placeholder-inode"_s}));
        QCOMPARE(statusOf([this] { (void)output(); }), 73);
        // The one that came too late has not forgotten what the other one remembers.
        QCOMPARE(recorded(), (QStringList{u"placeholder"_s, u"placeholder-inode"_s}));
    }
    QCOMPARE(names(), QStringList());
}

void TestOutput::takenAtTheStart_data()
{
    QTest::addColumn<QString>("what");
    for (const char *what : {"file", "empty file", "folder", "dangling link"})
        QTest::newRow(what) << QString::fromLatin1(what);
}

void TestOutput::takenAtTheStart()
{
    QFETCH(QString, what);
    if (what == "folder"_L1)
        QVERIFY(QDir().mkdir(path()));
    else if (what == "dangling link"_L1)
        QVERIFY(QFile::link(u"/nowhere"_s, path()));
    else
        write(path(), what == "file"_L1 ? "theirs" : "");
    QCOMPARE(statusOf([this] { (void)output(); }), 73);
    QCOMPARE(names(), QStringList{u"copy"_s});
    QCOMPARE(contentOf(path()), what == "file"_L1 ? QByteArray("theirs") : QByteArray());
}

void TestOutput::replaced_data()
{
    QTest::addColumn<int>("error"); // of the exchange; 0: none
    QTest::newRow("exchanged") << 0;
    QTest::newRow("the file system can't exchange") << EINVAL;
    QTest::newRow("the system can't exchange") << ENOSYS;
}

void TestOutput::replaced()
{
    QFETCH(int, error);
    exchangeError = error;
    {
        Output held = output();
        Draft draft(held, *m_record);
        engine::writeAll(draft.file(), "the copy");
        draft.publish(held);
        QCOMPARE(names(), QStringList{u"copy"_s});
    }
    QCOMPARE(names(), QStringList{u"copy"_s});
    QCOMPARE(contentOf(path()), QByteArray("the copy"));
}

void TestOutput::takenInTheEnd_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<bool>("late"); // after corvgs has looked
    for (const char *what : {"file", "empty file", "written into", "link"}) {
        QTest::addRow("%s", what) << QString::fromLatin1(what) << false;
        QTest::addRow("%s, at the last moment", what) << QString::fromLatin1(what) << true;
    }
}

// What somebody else has made of the name stays, and nothing else.
void TestOutput::takenInTheEnd()
{
    QFETCH(QString, what);
    QFETCH(bool, late);
    const auto take = [&] {
        if (what != "written into"_L1)
            QVERIFY(QFile::remove(path()));
        if (what == "link"_L1)
            QVERIFY(QFile::link(u"/nowhere"_s, path()));
        else
            write(path(), what == "empty file"_L1 ? "" : "theirs");
    };
    {
        Output held = output();
        Draft draft(held, *m_record);
        engine::writeAll(draft.file(), "the copy");
        if (late)
            beforeExchange = take;
        else
            take();
        QCOMPARE(statusOf([&] { draft.publish(held); }), 73);
    }
    QCOMPARE(names(), QStringList{u"copy"_s});
    if (what == "link"_L1)
        QCOMPARE(QFile::symLinkTarget(path()), u"/nowhere"_s);
    else
        QCOMPARE(contentOf(path()), what == "empty file"_L1 ? QByteArray() : QByteArray("theirs"));
}

void TestOutput::exchangeFails()
{
    exchangeError = ENOSPC;
    {
        Output held = output();
        Draft draft(held, *m_record);
        QCOMPARE(statusOf([&] { draft.publish(held); }), 1);
    }
    QCOMPARE(names(), QStringList());
}

void TestOutput::draftNameTaken()
{
    const QString taken = u".corvgs-%1-0"_s.arg(getpid());
    write(path(taken), "theirs");
    Output held = output();
    Draft draft(held, *m_record);
    engine::writeAll(draft.file(), "the copy");
    draft.publish(held);
    QCOMPARE(contentOf(path()), QByteArray("the copy"));
    QCOMPARE(names(), (QStringList{taken, u"copy"_s}));
    QCOMPARE(contentOf(path(taken)), QByteArray("theirs"));
}

QTEST_GUILESS_MAIN(TestOutput)
#include "tst_output.moc"
