// Which texts a translation would reach, and in which context. None is part of the program.
#include "support/modal.h"
#include "windowtest.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>
#include <QTranslator>

namespace {

// Puts the context before each text.
class Translator : public QTranslator
{
public:
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        return QString("%1: %2").arg(context, source);
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class TestTranslation : public WindowTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void captions_data();
    void captions();
    void headers();
    void dialogs();
    void fileDialogs_data();
    void fileDialogs();
    void emptyInput();
    void noOutputFolder();
    void verdicts_data();
    void verdicts();

private:
    Translator m_translator;
};

void TestTranslation::init()
{
    QVERIFY(QCoreApplication::installTranslator(&m_translator));
    WindowTest::init();
}

void TestTranslation::cleanup()
{
    WindowTest::cleanup();
    QVERIFY(QCoreApplication::removeTranslator(&m_translator));
}

void TestTranslation::captions_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("label") << "process: File List";
    QTest::newRow("outputfolderlabel") << "process: Output Folder";
    QTest::newRow("openfileButton") << "process: Add";
    QTest::newRow("removeButton") << "process: Romove";
    QTest::newRow("removeallButton") << "process: Remove All";
}

void TestTranslation::captions()
{
    const auto *widget = m_user->find<QWidget>(QTest::currentDataTag());
    QTEST(widget->property("text").toString(), "text");
}

void TestTranslation::headers()
{
    QStringList texts;
    for (int column = 0; column < 3; ++column)
        texts.append(m_user->table()->horizontalHeaderItem(column)->text());
    QCOMPARE(texts, QStringList({"process: PDF File", "process: File Size", "process: Result"}));
    QCOMPARE(m_window->windowTitle(), QString("Corvane"));
}

void TestTranslation::dialogs()
{
    QStringList titles;
    for (const char *button : {"pushButton_option", "aboutButton"}) {
        const NextModal dialog([&titles](QWidget &shown) {
            titles.append(shown.windowTitle());
            shown.close();
        });
        m_user->press(button);
    }
    QCOMPARE(titles, QStringList({"OpDialog: Option", "AboutDialog: About"}));
}

void TestTranslation::fileDialogs_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("openfileButton") << "Process: Add File";
    QTest::newRow("outputButton") << "Process: Save";
}

void TestTranslation::fileDialogs()
{
    QString title;
    const NextModal dialog([&title](QWidget &shown) {
        title = shown.windowTitle();
        shown.close();
    });
    m_user->press(QTest::currentDataTag());
    QTEST(title, "title");
}

void TestTranslation::emptyInput()
{
    const NextMessageBox box;
    m_user->press("runButton");
    QCOMPARE(box.title, QString("Process: Empty input"));
    QCOMPARE(box.text, QString("Process: Please choose files to convert."));
}

void TestTranslation::noOutputFolder()
{
    list({"a.pdf"});
    m_user->folderEdit()->clear();
    const NextMessageBox box;
    m_user->press("runButton");
    QCOMPARE(box.title, QString("Invalid order"));
    QCOMPARE(box.text, QString("Please specify an output folder."));
}

void TestTranslation::verdicts_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("tip");
    QTest::newRow("Process: Succeed") << qint64(6000) << "Outcomes: 10 B to 6.0 KB, Outcomes: ";
    QTest::newRow("Process: Failed") << qint64(-1) << "Outcomes: No copy was made";
}

void TestTranslation::verdicts()
{
    QFETCH(qint64, bytes);
    m_engine->behave({.bytes = bytes});
    list({"a.pdf"});
    m_user->runToTheEnd();
    QCOMPARE(m_user->verdict(0), QString(QTest::currentDataTag()));
    QFETCH(QString, tip);
    QVERIFY(m_user->table()->item(0, 2)->toolTip().startsWith(tip));
}

QTEST_MAIN(TestTranslation)
#include "tst_translation.moc"
