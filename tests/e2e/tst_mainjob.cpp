// The main job from outside: the built program on a desktop of its own, worked with pointer, keys
// and files dragged from another program.

#include "pdf.h"
#include "programtree.h"
#include "support/sandbox.h"
#include "user.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <algorithm>
#include <memory>

namespace {

enum class Start { direct, linked, copied };

} // namespace

class TestMainJob : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();
    void dropChooseRun_data();
    void dropChooseRun();
    void windowOnTheScreen();

private:
    QString copySample(const QString &sample, const QString &name) const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<ProgramTree> m_tree;
    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<User> m_user;
};

void TestMainJob::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void TestMainJob::cleanupTestCase()
{
    m_desktop.reset();
}

void TestMainJob::init()
{
    m_user = std::make_unique<User>(*m_desktop);
    m_tree = std::make_unique<ProgramTree>();
    m_sandbox = std::make_unique<Sandbox>(); // from here on it holds all temporary files
}

void TestMainJob::cleanup()
{
    m_sandbox.reset();
    m_tree.reset();
    m_user.reset();
}

QString TestMainJob::copySample(const QString &sample, const QString &name) const
{
    const QString path = m_sandbox->inputFolder() + '/' + name;
    if (!QFile::copy(SAMPLES_FOLDER "/" + sample, path))
        qFatal("cannot copy to %s", qPrintable(path));
    return path;
}

void TestMainJob::dropChooseRun_data()
{
    QTest::addColumn<Start>("start");
    QTest::newRow("from another folder") << Start::direct;
    QTest::newRow("through a symbolic link") << Start::linked;
    QTest::newRow("from a path of blanks and non-ASCII letters") << Start::copied;
}

void TestMainJob::dropChooseRun()
{
    const QString link = m_user->home("a link");
    QVERIFY(QFile::link(PROGRAM, link));
    const QStringList inputs = {
        copySample("colour-scan.pdf", "a.b.PDF"), copySample("text.pdf", " Zoë – 報告書 №7.pdf"),
        copySample("gray-scan.pdf", "it's.pdf"), m_sandbox->addInput("broken.pdf", 6000),
        m_sandbox->addInput("notes.txt", 6000)};
    QList<QByteArray> before;
    std::ranges::transform(inputs, std::back_inserter(before), readFile);

    QFETCH(Start, start);
    m_user->start(start == Start::linked   ? link
                  : start == Start::copied ? m_tree->program()
                                           : PROGRAM);
    // Offered to be moved away, they are copied.
    QCOMPARE(m_user->drop(inputs), QString("copy"));
    m_user->chooseFolder(m_sandbox->outputFolder());
    QCOMPARE(m_user->folder(), m_sandbox->outputFolder());
    QCOMPARE(m_sandbox->stored("dir/output"), m_sandbox->outputFolder());
    QVERIFY(!m_user->resultSeen(0));
    m_user->run();
    m_user->awaitEndOfBatch(4);
    QVERIFY(!m_user->resultSeen(4));
    QCOMPARE(m_user->cell(0, 0), inputs[3]); // from last to first
    QCOMPARE(m_user->cell(3, 0), inputs[0]);
    QCOMPARE(m_user->verdicts(4), QStringList({"Failed", "Succeed", "Succeed", "Succeed"}));
    QCOMPARE(m_user->quit(), 0);

    QCOMPARE(m_sandbox->outputs(), QStringList({" Zoë – 報告書 №7.pdf", "a.pdf", "it's.pdf"}));
    for (const QString &name : m_sandbox->outputs())
        QCOMPARE(pagesOf(m_sandbox->outputPath(name)), name.contains("Zoë") ? 3 : 1);
    for (qsizetype i = 0; i < inputs.size(); ++i)
        QCOMPARE(readFile(inputs[i]), before[i]);
    QCOMPARE(m_sandbox->temporaryFiles(), QStringList({"corvane.ini"}));
}

void TestMainJob::windowOnTheScreen()
{
    m_user->start(PROGRAM);
    const QRect rect = m_user->window("Corvane").rect;
    QCOMPARE(rect.size(), QSize(507, 347));
    // Its frame is the window manager's, and moves it a little.
    const QPoint off = rect.center() - QRect(0, 0, 1280, 1024).center();
    QVERIFY2(off.manhattanLength() < 40, qPrintable(QString("%1, %2").arg(off.x()).arg(off.y())));
    QCOMPARE(m_user->quit(), 0);
    QCOMPARE(m_sandbox->temporaryFiles(), QStringList());
}

QTEST_GUILESS_MAIN(TestMainJob)
#include "tst_mainjob.moc"
