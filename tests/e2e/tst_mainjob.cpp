// The main job from outside: the built program on a desktop of its own, worked with pointer, keys
// and files dragged from another program.

#include "scene.h"
#include "support/pdftools.h"
#include "support/tools.h"

#include <QFile>
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
    void cleanupTestCase();
    void dropChooseRun_data();
    void dropChooseRun();
    void windowOnTheScreen();

private:
    std::unique_ptr<Desktop> m_desktop;
};

void TestMainJob::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void TestMainJob::cleanupTestCase()
{
    m_desktop.reset();
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
    Scene scene(*m_desktop);
    const QString link = scene.user.home("a link");
    QVERIFY(QFile::link(PROGRAM, link));
    const QStringList inputs = {
        scene.addSample("colour-scan", "a.b.PDF"), scene.addSample("text", " Zoë – 報告書 №7.pdf"),
        scene.addSample("gray-scan", "it's.pdf"), scene.sandbox.addInput("broken.pdf", 6000),
        scene.sandbox.addInput("notes.txt", 6000)};
    QList<QByteArray> before;
    std::ranges::transform(inputs, std::back_inserter(before), contentOf);

    QFETCH(Start, start);
    scene.user.start(start == Start::linked   ? link
                     : start == Start::copied ? scene.tree.program()
                                              : PROGRAM);
    // Offered to be moved away, they are copied.
    QCOMPARE(scene.user.drop(inputs), QString("copy"));
    scene.user.chooseFolder(scene.sandbox.outputFolder());
    QCOMPARE(scene.user.folder(), scene.sandbox.outputFolder());
    QCOMPARE(scene.sandbox.stored("dir/output"), scene.sandbox.outputFolder());
    QVERIFY(!scene.user.resultSeen(0));
    scene.user.run();
    scene.user.awaitEndOfBatch(4);
    QVERIFY(!scene.user.resultSeen(4));
    QCOMPARE(scene.user.cell(0, 0), inputs[3]); // from last to first
    QCOMPARE(scene.user.cell(3, 0), inputs[0]);
    QCOMPARE(scene.user.verdicts(4), QStringList({"Failed", "Succeed", "Succeed", "Succeed"}));
    QCOMPARE(scene.user.quit(), 0);

    QCOMPARE(scene.sandbox.outputs(), QStringList({" Zoë – 報告書 №7.pdf", "a.pdf", "it's.pdf"}));
    for (const QString &name : scene.sandbox.outputs())
        QCOMPARE(tools::pages(scene.sandbox.outputPath(name)), name.contains("Zoë") ? 3 : 1);
    for (qsizetype i = 0; i < inputs.size(); ++i)
        QCOMPARE(contentOf(inputs[i]), before[i]);
    QCOMPARE(scene.sandbox.temporaryFiles(), QStringList({"corvane.ini"}));
}

void TestMainJob::windowOnTheScreen()
{
    Scene scene(*m_desktop);
    scene.user.start(PROGRAM);
    const QRect rect = scene.user.window("Corvane").rect;
    QCOMPARE(rect.size(), QSize(507, 347));
    // Its frame is the window manager's, and moves it a little.
    const QPoint off = rect.center() - QRect(0, 0, 1280, 1024).center();
    QVERIFY2(off.manhattanLength() < 40, qPrintable(QString("%1, %2").arg(off.x()).arg(off.y())));
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(scene.sandbox.temporaryFiles(), QStringList());
}

QTEST_GUILESS_MAIN(TestMainJob)
#include "tst_mainjob.moc"
