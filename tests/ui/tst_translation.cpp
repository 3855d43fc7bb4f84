// Which texts a translation would reach, and in which context. None is part of the program.
#include "src/process.h"
#include "support/bound.h"
#include "support/fakeengine.h"
#include "support/modal.h"
#include "support/sandbox.h"

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTranslator>

#include <memory>

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

class TestTranslation : public QObject
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
    template <typename Widget>
    Widget *find(const QString &name) const
    {
        return m_window->findChild<Widget *>(name);
    }
    QTableWidget *table() const { return find<QTableWidget>("inputfiletableWidget"); }
    void list(const QString &path);
    void press(const char *button) { QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton); }

    Translator m_translator;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<Process> m_window;
};

void TestTranslation::init()
{
    QVERIFY(QCoreApplication::installTranslator(&m_translator));
    m_engine = std::make_unique<FakeEngine>();
    m_sandbox = std::make_unique<Sandbox>();
    m_window = std::make_unique<Process>();
    m_window->show();
}

void TestTranslation::cleanup()
{
    m_window.reset();
    m_sandbox.reset();
    m_engine.reset();
    QVERIFY(QCoreApplication::removeTranslator(&m_translator));
}

void TestTranslation::list(const QString &path)
{
    const NextModal dialog([&path](QWidget &files) {
        files.findChild<QLineEdit *>("fileNameEdit")->setText(path);
        QMetaObject::invokeMethod(&files, "accept");
    });
    press("openfileButton");
    QCOMPARE(table()->rowCount(), 1);
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
    const auto *widget = find<QWidget>(QTest::currentDataTag());
    QTEST(widget->property("text").toString(), "text");
}

void TestTranslation::headers()
{
    QStringList texts;
    for (int column = 0; column < 3; ++column)
        texts.append(table()->horizontalHeaderItem(column)->text());
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
        press(button);
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
    press(QTest::currentDataTag());
    QTEST(title, "title");
}

void TestTranslation::emptyInput()
{
    const NextMessageBox box;
    press("runButton");
    QCOMPARE(box.title, QString("Process: Empty input"));
    QCOMPARE(box.text, QString("Process: Please choose files to convert."));
}

void TestTranslation::noOutputFolder()
{
    list(m_sandbox->addInput("a.pdf"));
    const NextMessageBox box;
    press("runButton");
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
    list(m_sandbox->addInput("a.pdf"));
    find<QLineEdit>("outputfolderEdit")->setText(m_sandbox->outputFolder());
    press("runButton");
    QTRY_VERIFY_WITH_TIMEOUT(table()->item(0, 2), bound);
    QCOMPARE(table()->item(0, 2)->text(), QString(QTest::currentDataTag()));
    QFETCH(QString, tip);
    QVERIFY(table()->item(0, 2)->toolTip().startsWith(tip));
}

QTEST_MAIN(TestTranslation)
#include "tst_translation.moc"
