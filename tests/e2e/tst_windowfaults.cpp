// What goes wrong around the program while it runs, and that nothing is lost by it.

#include "scene.h"
#include "support/bound.h"
#include "support/machine.h"
#include "support/pdftools.h"
#include "support/processes.h"
#include "support/tools.h"
#include "support/verdicts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <csignal>
#include <memory>
#include <unistd.h>

namespace {

/// A disk of its own that only the program and its engines see, in place of a folder.
class TinyDisk
{
public:
    TinyDisk(User &user, const QString &folder)
        : m_user(user)
        , m_folder(folder)
    {
    }

    /// Starts the program with the disk.
    void start(const QString &program) const
    {
        m_user.start("unshare", machine::onTinyDisk(m_folder, "size=4m,nr_inodes=100", {program}));
    }

    /// Runs a shell command where the disk is; $1 is its folder. One without end is ended.
    void run(const QString &command) const
    {
        // Its root as well, which is another one in a change-root environment.
        QStringList arguments{"--target", QString::number(m_user.program.processId()), "--mount",
                              "--root"};
        if (geteuid() != 0)
            arguments << "--user"
                      << "--preserve-credentials";
        tools::outputOf("nsenter", arguments + QStringList{"timeout", "50", "sh", "-c", command,
                                                           "sh", m_folder});
    }

    /// A file on the disk as others can read it.
    QString path(const QString &name = {}) const
    {
        return QString("/proc/%1/root%2/%3").arg(m_user.program.processId()).arg(m_folder, name);
    }

private:
    User &m_user;
    QString m_folder;
};

} // namespace

class TestWindowFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void engineMissing();
    void engineKilled();
    void engineStopped();
    void folderRemoved();
    void folderReadOnly();
    void folderFull();
    void inputRemoved();
    void settingsUnreadable_data();
    void settingsUnreadable();
    void markUnwritable();
    void programKilled();
    void twoInstances();
    void twoInstancesWantOneName();

private:
    static void startBoth(Scene &scene, const QStringList &ours, User &other,
                          const QStringList &theirs);

    std::unique_ptr<Desktop> m_desktop;
};

void TestWindowFaults::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void TestWindowFaults::cleanupTestCase()
{
    m_desktop.reset();
}

// The run stands still at the file in work; the next press of the button goes on behind it.
void TestWindowFaults::engineMissing()
{
    Scene scene(*m_desktop);
    const User &user = scene.user;
    scene.startWith({scene.addSample("text", "a.pdf"), scene.addSample("text", "b.pdf")});
    const QString away = scene.tree.engine() + ".away";
    QVERIFY(QFile::rename(scene.tree.engine(), away));
    user.run();
    QTRY_VERIFY_WITH_TIMEOUT(user.progressSeen() > 0, bound);
    // It is there for its user, in thousands of bytes.
    const qint64 bytes = QFileInfo(SAMPLES_FOLDER "/text.pdf").size();
    QCOMPARE(user.cell(0, 1).trimmed(), QString::number(double(bytes) / 1000, 'f', 3) + " KB");
    QVERIFY(!user.resultSeen(0));
    QVERIFY(user.progressSeen() > 0);

    QVERIFY(QFile::rename(away, scene.tree.engine()));
    user.run();
    user.awaitEndOfBatch(2);
    QCOMPARE(user.verdicts(2), QStringList({failed, succeed}));
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(scene.sandbox.outputs(), QStringList({"b.pdf"}));
}

void TestWindowFaults::engineKilled()
{
    Scene scene(*m_desktop);
    const User &user = scene.user;
    scene.tree.holdEngines(true);
    scene.startWith({scene.addSample("text", "a.pdf"), scene.addSample("text", "b.pdf"),
                     scene.addSample("text", "c.pdf")});
    user.run();
    QVERIFY(sendSignal(scene.user.awaitHeldEngine(), SIGKILL));
    QTRY_VERIFY_WITH_TIMEOUT(user.resultSeen(0), bound);
    scene.user.resumeEngine();
    QTRY_VERIFY_WITH_TIMEOUT(user.resultSeen(1), bound);
    QVERIFY(sendSignal(scene.user.awaitHeldEngine(), SIGTERM));
    QVERIFY(
        sendSignal(scene.user.awaitHeldEngine(), SIGCONT)); // it takes note of the other signal now
    user.awaitEndOfBatch(3);
    QCOMPARE(user.verdicts(3), QStringList({failed, succeed, failed}));
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(scene.sandbox.outputs(), QStringList({"b.pdf"}));
    QCOMPARE(scene.sandbox.temporaryFiles(), QStringList({"corvane.ini"}));
}

// The window waits and answers; no verdict is given before the engine has ended.
void TestWindowFaults::engineStopped()
{
    Scene scene(*m_desktop);
    const User &user = scene.user;
    scene.tree.holdEngines(true);
    const QString input = scene.sandbox.inputFolder() + "/long.pdf";
    const QStringList often(8, scene.addSample("mixed", "a.pdf"));
    tools::outputOf("qpdf", QStringList{"--empty", "--pages"} + often + QStringList{"--", input});
    scene.startWith({input});
    user.run();
    const qint64 engine = scene.user.awaitHeldEngine();
    QVERIFY(sendSignal(engine, SIGCONT));
    QTRY_VERIFY_WITH_TIMEOUT(!scene.sandbox.outputs().isEmpty(), bound);
    QVERIFY(sendSignal(engine, SIGSTOP));
    QTRY_COMPARE_WITH_TIMEOUT(stateOf(engine), 'T', bound);
    QCOMPARE(user.folder(), scene.sandbox.outputFolder());
    QVERIFY(!user.resultSeen(0));
    QVERIFY(user.progressSeen() > 0);
    QVERIFY(sendSignal(engine, SIGCONT));
    user.awaitEndOfBatch(1);
    QCOMPARE(user.verdicts(1), QStringList({succeed}));
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(tools::pages(scene.sandbox.outputPath("long.pdf")), 8 * 5);
}

void TestWindowFaults::folderRemoved()
{
    Scene scene(*m_desktop);
    const User &user = scene.user;
    const QStringList inputs = {scene.addSample("text", "a.pdf"), scene.addSample("text", "b.pdf")};
    const QByteArray before = contentOf(inputs[0]);
    scene.tree.holdEngines(true);
    scene.startWith(inputs);
    user.run();
    scene.user.awaitHeldEngine();
    QVERIFY(QDir(scene.sandbox.outputFolder()).removeRecursively());
    scene.user.resumeEngine();
    user.awaitWindow("Invalid order");
    user.pressKey(XKey::enter);
    user.awaitEndOf("Invalid order");
    QTRY_COMPARE_WITH_TIMEOUT(user.folder(), QString(), bound);
    QVERIFY(!user.resultSeen(0));

    scene.tree.holdEngines(false);
    const QString other = scene.user.home("other");
    QVERIFY(QDir().mkdir(other));
    user.chooseFolder(other);
    user.run();
    user.awaitEndOfBatch(2);
    QCOMPARE(user.verdicts(2), QStringList({failed, succeed}));
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(QDir(other).entryList(QDir::Files | QDir::Hidden), QStringList({"b.pdf"}));
    QCOMPARE(tools::pages(other + "/b.pdf"), 3);
    QCOMPARE(contentOf(inputs[0]), before);
    QCOMPARE(contentOf(inputs[1]), before);
}

void TestWindowFaults::folderReadOnly()
{
    SKIP_IF(machine::whyNoTinyDisk());
    Scene scene(*m_desktop);
    const User &user = scene.user;
    const QStringList inputs = {scene.addSample("text", "a.pdf"), scene.addSample("text", "b.pdf")};
    const TinyDisk disk(scene.user, scene.sandbox.outputFolder());
    scene.tree.holdEngines(true);
    disk.start(scene.tree.program());
    user.drop({inputs[1], inputs[0]});
    user.chooseFolder(scene.sandbox.outputFolder());
    user.run();
    scene.user.resumeEngine();
    QTRY_VERIFY_WITH_TIMEOUT(user.resultSeen(0), bound);
    scene.user.awaitHeldEngine();
    // What the kernel keeps of an ended engine's file rules holds the disk for a moment longer.
    disk.run("until mount -o remount,bind,ro \"$1\" 2>/dev/null; do :; done");
    scene.user.resumeEngine();
    user.awaitEndOfBatch(2);
    QCOMPARE(user.verdicts(2), QStringList({succeed, failed}));
    QCOMPARE(QDir(disk.path()).entryList(QDir::Files | QDir::Hidden), QStringList({"a.pdf"}));
    QCOMPARE(tools::pages(disk.path("a.pdf")), 3);

    // Writable again, it takes both; the first copy stays as it is.
    disk.run("mount -o remount,bind,rw \"$1\"");
    scene.tree.holdEngines(false);
    user.run();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(disk.path("b.pdf")), bound);
    user.awaitEndOfBatch(2);
    QCOMPARE(user.verdicts(2), QStringList({succeed, succeed}));
    QCOMPARE(QDir(disk.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList({"a.pdf", "a0.pdf", "b.pdf"}));
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(scene.sandbox.temporaryFiles(), QStringList({"corvane.ini"}));
}

void TestWindowFaults::folderFull()
{
    SKIP_IF(machine::whyNoTinyDisk());
    Scene scene(*m_desktop);
    const User &user = scene.user;
    const QStringList inputs = {scene.addSample("text", "a.pdf"),
                                scene.addSample("colour-scan", "b.pdf"),
                                scene.addSample("text", "c.pdf")};
    const TinyDisk disk(scene.user, scene.sandbox.outputFolder());
    scene.tree.holdEngines(true);
    disk.start(scene.tree.program());
    user.drop({inputs[2], inputs[1], inputs[0]});
    user.chooseFolder(scene.sandbox.outputFolder());
    user.run();
    scene.user.resumeEngine();
    QTRY_VERIFY_WITH_TIMEOUT(user.resultSeen(0), bound);
    scene.user.awaitHeldEngine();
    disk.run("head -c 5000000 /dev/zero >\"$1\"/ballast 2>/dev/null; test -s \"$1\"/ballast");
    scene.user.resumeEngine();
    QTRY_VERIFY_WITH_TIMEOUT(user.resultSeen(1), bound);
    scene.user.awaitHeldEngine();
    disk.run("rm \"$1\"/ballast");
    scene.user.resumeEngine();
    user.awaitEndOfBatch(3);
    QCOMPARE(user.verdicts(3), QStringList({succeed, failed, succeed}));
    QCOMPARE(QDir(disk.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList({"a.pdf", "c.pdf"}));
    for (const char *name : {"a.pdf", "c.pdf"})
        QCOMPARE(tools::pages(disk.path(name)), 3);
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(scene.sandbox.temporaryFiles(), QStringList({"corvane.ini"}));
}

// One that an engine was just given, and one that waits.
void TestWindowFaults::inputRemoved()
{
    Scene scene(*m_desktop);
    const User &user = scene.user;
    const QStringList inputs = {scene.addSample("text", "a.pdf"), scene.addSample("text", "b.pdf"),
                                scene.addSample("text", "c.pdf")};
    scene.tree.holdEngines(true);
    scene.startWith(inputs);
    user.run();
    scene.user.awaitHeldEngine();
    QVERIFY(QFile::remove(inputs[0]));
    QVERIFY(QFile::remove(inputs[1]));
    scene.tree.holdEngines(false);
    scene.user.resumeEngine();
    user.awaitEndOfBatch(3);
    QCOMPARE(user.verdicts(3), QStringList({failed, failed, succeed}));
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(scene.sandbox.outputs(), QStringList({"c.pdf"}));
}

void TestWindowFaults::settingsUnreadable_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("garbage") << "head -c 100000 /dev/urandom >\"$1\"";
    QTest::newRow("a folder") << "mkdir \"$1\" && touch \"$1\"/inside";
    QTest::newRow("a link to itself") << "ln -s corvane.ini \"$1\"";
    QTest::newRow("not allowed")
        << "touch \"$1\" && chmod 000 \"$1\""; // root may, and finds nothing
}

// As if there were none: the program starts, offers its defaults and runs with them.
void TestWindowFaults::settingsUnreadable()
{
    QFETCH(QString, how);
    Scene scene(*m_desktop);
    const User &user = scene.user;
    tools::outputOf("sh", {"-c", how, "sh", scene.sandbox.settingsFile()});
    scene.startWith({scene.addSample("colour-scan", "a.pdf")});
    user.clickMain("pushButton_option");
    user.clickOption("lineEdit_clr_res");
    m_desktop->key('a', {XKey::control});
    QCOMPARE(user.copied(), QString("150"));
    user.clickOption("pushButton_apply");
    user.awaitEndOf("Option");
    user.run();
    user.awaitEndOfBatch(1);
    QCOMPARE(user.verdicts(1), QStringList({succeed}));
    QCOMPARE(scene.user.quit(), 0);
    const QString copy = scene.sandbox.outputPath("a.pdf");
    QCOMPARE(tools::images(copy).value(0).dpi, 150);
    if (QFileInfo(scene.sandbox.settingsFile()).isDir())
        QVERIFY(QFile::exists(scene.sandbox.settingsFile() + "/inside"));
}

// It stays as it was and goes to the engine so.
void TestWindowFaults::markUnwritable()
{
    SKIP_IF(machine::whyNoTinyDisk());
    Scene scene(*m_desktop);
    const User &user = scene.user;
    const QString input = scene.addSample("text", "a.pdf");
    const QString folder = scene.user.home("disk");
    QVERIFY(QDir().mkdir(folder));
    QVERIFY(QFile::link(folder + "/mark", scene.sandbox.markFile()));
    const TinyDisk disk(scene.user, folder);
    disk.start(scene.tree.program());
    disk.run(
        "printf '[ /Title (Old) /DOCINFO pdfmark' >\"$1\"/mark && mount -o remount,bind,ro \"$1\"");
    user.drop({input});
    user.chooseFolder(scene.sandbox.outputFolder());
    user.clickMain("pushButton_option");
    user.turnToOptionPage(3);
    user.typeOption("lineEdit_title", "New");
    user.clickOption("pushButton_apply");
    user.awaitEndOf("Option");
    QTRY_COMPARE_WITH_TIMEOUT(scene.sandbox.stored("Annot/Tit"), QString("New"), bound);
    user.run();
    user.awaitEndOfBatch(1);
    QCOMPARE(user.verdicts(1), QStringList({succeed}));
    QCOMPARE(scene.user.quit(), 0);
    const QString copy = scene.sandbox.outputPath("a.pdf");
    QVERIFY(tools::outputOf("pdfinfo", {copy}).simplified().startsWith("Title: Old "));
}

// The file in work is finished without it. Started again, it begins with an empty list and goes
// around the copies that are there.
void TestWindowFaults::programKilled()
{
    Scene scene(*m_desktop);
    const User &user = scene.user;
    const QStringList inputs = {scene.addSample("text", "a.pdf"), scene.addSample("text", "b.pdf")};
    scene.tree.holdEngines(true);
    scene.startWith(inputs);
    user.run();
    const qint64 engine = scene.user.awaitHeldEngine();
    scene.user.program.kill();
    QVERIFY(scene.user.program.waitForFinished(bound));
    QVERIFY(sendSignal(engine, SIGCONT));
    awaitEndOf(engine);
    QCOMPARE(scene.sandbox.outputs(), QStringList({"a.pdf"}));
    const QByteArray first = contentOf(scene.sandbox.outputPath("a.pdf"));
    QCOMPARE(tools::pages(scene.sandbox.outputPath("a.pdf")), 3);

    scene.tree.holdEngines(false);
    scene.startWith(inputs);
    user.run();
    user.awaitEndOfBatch(2);
    QCOMPARE(user.verdicts(2), QStringList({succeed, succeed}));
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(scene.sandbox.outputs(), QStringList({"a.pdf", "a0.pdf", "b.pdf"}));
    QCOMPARE(contentOf(scene.sandbox.outputPath("a.pdf")), first);
    QCOMPARE(scene.sandbox.temporaryFiles(), QStringList({"corvane.ini"}));
}

// With one settings file and one output folder between them.
void TestWindowFaults::twoInstances()
{
    User other(*m_desktop);
    Scene scene(*m_desktop);
    QStringList ours, theirs;
    for (int i = 1; i <= 4; ++i) {
        ours.append(scene.addSample("text", QString("ours%1.pdf").arg(i)));
        theirs.append(scene.addSample("text", QString("theirs%1.pdf").arg(i)));
    }
    startBoth(scene, ours, other, theirs);
    scene.user.awaitEndOfBatch(4);
    QCOMPARE(scene.user.verdicts(4), QStringList(4, succeed));
    other.activate();
    other.awaitEndOfBatch(4);
    QCOMPARE(other.verdicts(4), QStringList(4, succeed));
    QCOMPARE(other.quit(), 0);
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(scene.sandbox.outputs().size(), 8);
    for (const QString &name : scene.sandbox.outputs())
        QCOMPARE(tools::pages(scene.sandbox.outputPath(name)), 3);
    QCOMPARE(scene.sandbox.temporaryFiles(), QStringList({"corvane.ini"}));
}

// Both find the name free. The engine that comes second leaves the other's copy alone.
void TestWindowFaults::twoInstancesWantOneName()
{
    User other(*m_desktop);
    Scene scene(*m_desktop);
    const QString ours = scene.addSample("text", "a.pdf");
    QVERIFY(QDir(scene.sandbox.inputFolder()).mkdir("theirs"));
    const QString theirs = scene.addSample("colour-scan", "theirs/a.pdf");
    startBoth(scene, {ours}, other, {theirs});
    scene.user.awaitEndOfBatch(1);
    other.activate();
    other.awaitEndOfBatch(1);
    QCOMPARE(other.quit(), 0);
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(scene.sandbox.outputs(), QStringList({"a.pdf"}));
    const int pages = tools::pages(scene.sandbox.outputPath("a.pdf"));
    QVERIFY2(pages == 3 || pages == 1, "neither's copy");
    QCOMPARE(contentOf(ours), contentOf(SAMPLES_FOLDER "/text.pdf"));
    QCOMPARE(contentOf(theirs), contentOf(SAMPLES_FOLDER "/colour-scan.pdf"));
    QCOMPARE(scene.sandbox.temporaryFiles(), QStringList({"corvane.ini"}));
}

// Their first engines set out together.
void TestWindowFaults::startBoth(Scene &scene, const QStringList &ours, User &other,
                                 const QStringList &theirs)
{
    scene.tree.holdEngines(true);
    scene.startWith(ours);
    scene.user.moveWindow({-380, 200});
    other.start(scene.tree.program());
    other.moveWindow({380, 0});
    other.drop({theirs.crbegin(), theirs.crend()});
    other.chooseFolder(scene.sandbox.outputFolder());
    other.run();
    scene.user.activate();
    scene.user.run();
    const qint64 first = scene.user.awaitHeldEngine();
    const qint64 second = other.awaitHeldEngine();
    scene.tree.holdEngines(false);
    QVERIFY(sendSignal(first, SIGCONT));
    QVERIFY(sendSignal(second, SIGCONT));
}

QTEST_GUILESS_MAIN(TestWindowFaults)
#include "tst_windowfaults.moc"
