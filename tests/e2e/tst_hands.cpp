// What hands do with the program: options, messages, the keyboard alone, closing in the middle.

#include "scene.h"
#include "support/bound.h"
#include "support/pdftools.h"
#include "support/processes.h"
#include "support/tools.h"

#include <QFileInfo>
#include <QTest>

#include <csignal>
#include <memory>

class TestHands : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void messages();
    void optionsApplied();
    void optionsCancelled();
    void keyboardOnly();
    void closedWhileRunning();

private:
    std::unique_ptr<Desktop> m_desktop;
};

void TestHands::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
}

void TestHands::cleanupTestCase()
{
    m_desktop.reset();
}

void TestHands::messages()
{
    Scene scene(*m_desktop);
    const User &user = scene.user;
    scene.user.start(scene.tree.program());
    user.run();
    user.awaitWindow("Empty input");
    user.pressKey(XKey::enter);
    user.awaitEndOf("Empty input");

    user.addFile(scene.addSample("text", "a.pdf"), 0);
    QCOMPARE(scene.sandbox.stored("dir/input"), scene.sandbox.inputFolder());
    user.run();
    user.awaitWindow("Invalid order");
    user.pressKey(XKey::enter);
    user.awaitEndOf("Invalid order");
    QVERIFY(!user.resultSeen(0));
    QCOMPARE(user.progressSeen(), 0);
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(scene.sandbox.outputs(), QStringList());
}

void TestHands::optionsApplied()
{
    Scene scene(*m_desktop);
    const User &user = scene.user;
    scene.startWith({scene.addSample("colour-scan", "a.pdf")});
    user.clickMain("pushButton_option");
    user.typeOption("lineEdit_clr_res", "72");
    user.wheelOption("comboBox_gry_down_type", -1);
    user.turnToOptionPage(2);
    user.pressKey(' '); // takes the page's check mark away
    user.turnToOptionPage(3);
    user.typeOption("lineEdit_title", "Annual report 7");
    user.clickOption("pushButton_apply");
    user.awaitEndOf("Option");
    QTRY_COMPARE_WITH_TIMEOUT(scene.sandbox.stored("Image/ColorRes"), QString("72"), bound);
    QCOMPARE(scene.sandbox.stored("Image/GrayType"), QString("2"));
    QCOMPARE(scene.sandbox.stored("Secur/Secur"), QString("No"));
    QCOMPARE(scene.sandbox.stored("Annot/Tit"), QString("Annual report 7"));
    QCOMPARE(scene.sandbox.stored("Image/MonoRes"), QString("300"));
    QTRY_VERIFY_WITH_TIMEOUT(contentOf(scene.sandbox.markFile()).contains("(Annual report 7)"),
                             bound);

    user.run();
    user.awaitEndOfBatch(1);
    QCOMPARE(user.verdicts(1), QStringList({"Succeed"}));
    QCOMPARE(scene.user.quit(), 0);
    const QString copy = scene.sandbox.outputPath("a.pdf");
    QVERIFY(tools::outputOf("pdfinfo", {copy}).simplified().startsWith("Title: Annual report 7 "));
    QCOMPARE(tools::images(copy).value(0).dpi, 72);
}

void TestHands::optionsCancelled()
{
    Scene scene(*m_desktop);
    const User &user = scene.user;
    scene.user.start(scene.tree.program());
    user.clickMain("pushButton_option");
    user.typeOption("lineEdit_clr_res", "72");
    user.pressKey(XKey::escape);
    user.awaitEndOf("Option");
    // What was typed stays in the dialog.
    user.clickMain("pushButton_option");
    user.clickOption("lineEdit_clr_res");
    m_desktop->key('a', {XKey::control});
    QCOMPARE(user.copied(), QString("72"));
    user.closeWindow();
    user.awaitEndOf("Option");
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(scene.sandbox.temporaryFiles(), QStringList());
}

// Tab goes through the window as it reads: table, Add, Remove, Remove All, folder, its button,
// options, run, about.
void TestHands::keyboardOnly()
{
    Scene scene(*m_desktop);
    const User &user = scene.user;
    const QString input = scene.addSample("text", "a.pdf");
    m_desktop->moveTo({2, 1000});
    scene.user.start(scene.tree.program());
    user.pressKey(XKey::tab, 2);
    user.pressKey(' ');
    user.choose("Add File", input);
    // The dialog goes a little before the program has its result.
    QTRY_COMPARE_WITH_TIMEOUT(scene.sandbox.stored("dir/input"), scene.sandbox.inputFolder(),
                              bound);
    user.awaitWindow("Corvane");
    user.pressKey(XKey::tab, 3);
    user.type(scene.sandbox.outputFolder());
    user.pressKey(XKey::tab, 3);
    user.pressKey(' ');
    QTRY_VERIFY_WITH_TIMEOUT(user.resultSeen(0) && user.progressSeen() == 0, bound);
    user.pressKey(XKey::tab, 2);
    user.pressKey(XKey::right, 2);
    QCOMPARE(user.copied(), QString("Succeed"));
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(tools::pages(scene.sandbox.outputPath("a.pdf")), 3);
}

// The file in work is finished, though nobody waits for it any more.
void TestHands::closedWhileRunning()
{
    Scene scene(*m_desktop);
    scene.tree.holdEngines(true);
    scene.startWith({scene.addSample("text", "a.pdf"), scene.addSample("text", "b.pdf")});
    scene.user.run();
    const qint64 engine = scene.user.awaitHeldEngine();
    QTRY_VERIFY_WITH_TIMEOUT(scene.user.progressSeen() > 0, bound);
    QCOMPARE(scene.user.quit(), 0);
    QCOMPARE(stateOf(engine), 'T');
    QVERIFY(sendSignal(engine, SIGCONT));
    awaitEndOf(engine);
    QCOMPARE(scene.sandbox.outputs(), QStringList({"a.pdf"}));
    QCOMPARE(tools::pages(scene.sandbox.outputPath("a.pdf")), 3);
    QCOMPARE(scene.sandbox.temporaryFiles(), QStringList({"corvane.ini"}));
}

QTEST_GUILESS_MAIN(TestHands)
#include "tst_hands.moc"
