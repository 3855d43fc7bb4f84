#include "src/process.h"
#include "support/bound.h"
#include "support/darkdesktop.h"
#include "support/dragdrop.h"
#include "support/fakeengine.h"
#include "support/sandbox.h"

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QToolTip>

#include <algorithm>
#include <memory>

namespace {

enum Column {
    path,
    size,
    result,
};

QWidget *shownTip()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto tip = std::ranges::find_if(windows, [](const QWidget *window) {
        return window->inherits("QTipLabel") && window->isVisible();
    });
    return tip == windows.end() ? nullptr : *tip;
}

// Between the darkest and the lightest point inside the frame.
int contrast(QWidget &widget)
{
    const QImage picture = widget.grab().toImage();
    int darkest = 255;
    int lightest = 0;
    for (int y = 2; y < picture.height() - 2; ++y) {
        for (int x = 2; x < picture.width() - 2; ++x) {
            darkest = std::min(darkest, qGray(picture.pixel(x, y)));
            lightest = std::max(lightest, qGray(picture.pixel(x, y)));
        }
    }
    return lightest - darkest;
}

} // namespace

class TestToolTips : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void pathIsGivenWhole();
    void outcomes_data();
    void outcomes();
    void originalGoneMeanwhile();
    void nothingToSayBeforeTheVerdict();
    void nextRunReplacesTheOutcome();
    void screenReaderGetsTheOutcome();
    void readable_data();
    void readable();

private:
    QTableWidget *table() const { return m_window->findChild<QTableWidget *>(); }
    QString list(const QString &name, qint64 bytes) const;
    void runToTheEnd();
    void hover(int row, Column column) const;

    QPalette m_palette;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<Process> m_window;
};

void TestToolTips::init()
{
    m_palette = QApplication::palette();
    m_engine = std::make_unique<FakeEngine>();
    m_sandbox = std::make_unique<Sandbox>();
    m_window = std::make_unique<Process>();
    m_window->findChild<QLineEdit *>("outputfolderEdit")->setText(m_sandbox->outputFolder());
    m_window->show();
}

void TestToolTips::cleanup()
{
    QToolTip::hideText();
    m_window.reset();
    m_sandbox.reset();
    m_engine.reset();
    QApplication::setPalette(m_palette);
}

QString TestToolTips::list(const QString &name, qint64 bytes) const
{
    const QString path = m_sandbox->addInput(name, bytes);
    dropUrls(*m_window, {QUrl::fromLocalFile(path)});
    return path;
}

void TestToolTips::runToTheEnd()
{
    QTest::mouseClick(m_window->findChild<QPushButton *>("runButton"), Qt::LeftButton);
    const auto *progress = m_window->findChild<QProgressBar *>("progressBar");
    QTRY_COMPARE_WITH_TIMEOUT(progress->value(), 0, bound);
}

void TestToolTips::hover(int row, Column column) const
{
    const QModelIndex cell = table()->model()->index(row, column);
    const QPoint place = table()->visualRect(cell).center();
    QHelpEvent help(QEvent::ToolTip, place, table()->viewport()->mapToGlobal(place));
    QApplication::sendEvent(table()->viewport(), &help);
}

void TestToolTips::pathIsGivenWhole()
{
    const QString plain = list("a & b.pdf", 10);
    hover(0, path);
    QCOMPARE(QToolTip::text(), plain);
    // Not rich text, whatever it looks like.
    const QString odd = list("<b>bold<b>&amp;.pdf", 10);
    hover(1, path);
    QCOMPARE(QToolTip::text(), "<qt>" + odd.toHtmlEscaped() + "</qt>");
}

void TestToolTips::outcomes_data()
{
    QTest::addColumn<qint64>("original");
    QTest::addColumn<int>("copy");
    QTest::addColumn<QString>("verdict");
    QTest::addColumn<QString>("tip");

    const auto row = [](qint64 original, int copy, const char *verdict, const char *tip) {
        QTest::newRow(tip) << original << copy << QString(verdict) << QString(tip);
    };
    row(288123, 93456, "Succeed", "288.1 KB to 93.5 KB, 68 % saved");
    row(93456, 93456, "Succeed", "93.5 KB to 93.5 KB, nothing saved");
    row(93456, 288123, "Succeed", "93.5 KB to 288.1 KB, 208 % larger");
    row(288123, 5000, "Failed", "The copy has at most 5000 bytes");
    row(288123, -1, "Failed", "No copy was made");
}

void TestToolTips::outcomes()
{
    QFETCH(qint64, original);
    QFETCH(int, copy);
    m_engine->behave({.bytes = copy});
    list("a.pdf", original);
    runToTheEnd();
    hover(0, result);
    QTEST(QToolTip::text(), "tip");
    QTEST(table()->item(0, result)->text(), "verdict");
}

void TestToolTips::originalGoneMeanwhile()
{
    m_engine->behave({.bytes = 93456});
    QVERIFY(QFile::remove(list("a.pdf", 288123)));
    runToTheEnd();
    hover(0, result);
    QCOMPARE(QToolTip::text(), QString("The copy has 93.5 KB"));
}

void TestToolTips::nothingToSayBeforeTheVerdict()
{
    list("a.pdf", 10);
    hover(0, path);
    QTRY_VERIFY_WITH_TIMEOUT(QToolTip::isVisible(), bound);
    hover(0, result);
    QTRY_VERIFY_WITH_TIMEOUT(!QToolTip::isVisible(), bound);
}

void TestToolTips::nextRunReplacesTheOutcome()
{
    m_engine->behave({.bytes = -1});
    list("a.pdf", 20000);
    runToTheEnd();
    m_engine->behave({.bytes = 10000});
    runToTheEnd();
    hover(0, result);
    QCOMPARE(QToolTip::text(), QString("20.0 KB to 10.0 KB, 50 % saved"));
}

void TestToolTips::screenReaderGetsTheOutcome()
{
    m_engine->behave({.bytes = 10000});
    list("a.pdf", 20000);
    runToTheEnd();
    const QTableWidgetItem *item = table()->item(0, result);
    QCOMPARE(item->data(Qt::AccessibleDescriptionRole).toString(),
             QString("20.0 KB to 10.0 KB, 50 % saved"));
    QAccessibleInterface *cells = QAccessible::queryAccessibleInterface(table());
    QVERIFY(cells && cells->tableInterface());
    const QAccessibleInterface *cell = cells->tableInterface()->cellAt(0, result);
    QCOMPARE(cell->text(QAccessible::Name), QString("Succeed"));
    QCOMPARE(cell->text(QAccessible::Description), QString("20.0 KB to 10.0 KB, 50 % saved"));
}

void TestToolTips::readable_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<int>("column");
    for (const auto &[desktop, dark] : {std::pair("light", false), std::pair("dark", true)}) {
        QTest::addRow("path, %s desktop", desktop) << dark << int(path);
        QTest::addRow("result, %s desktop", desktop) << dark << int(result);
    }
}

// The table's style sheet must not reach it.
void TestToolTips::readable()
{
    QFETCH(bool, dark);
    QFETCH(int, column);
    if (dark)
        QApplication::setPalette(darkDesktop());
    list("a.pdf", 10);
    runToTheEnd();
    hover(0, static_cast<Column>(column));
    QTRY_VERIFY_WITH_TIMEOUT(shownTip(), bound);
    QVERIFY(contrast(*shownTip()) > 120);
}

QTEST_MAIN(TestToolTips)
#include "tst_tooltips.moc"
