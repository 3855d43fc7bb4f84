// What the pointer is told over a file and over its verdict, and the screen reader with it.

#include "support/bound.h"
#include "support/contrast.h"
#include "support/darkdesktop.h"
#include "windowtest.h"

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QTableWidget>
#include <QTest>
#include <QToolTip>

#include <algorithm>

namespace {

QWidget *shownTip()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto tip = std::ranges::find_if(windows, [](const QWidget *window) {
        return window->inherits("QTipLabel") && window->isVisible();
    });
    return tip == windows.end() ? nullptr : *tip;
}

} // namespace

class TestToolTips : public WindowTest
{
    Q_OBJECT

private slots:
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
    QString listOne(const QString &name, qint64 bytes) const;
    void hover(int row, WindowUser::Column column) const;

    QPalette m_palette = QApplication::palette();
};

void TestToolTips::cleanup()
{
    QToolTip::hideText();
    WindowTest::cleanup();
    QApplication::setPalette(m_palette);
}

QString TestToolTips::listOne(const QString &name, qint64 bytes) const
{
    const QString path = m_sandbox->addInput(name, bytes);
    m_user->drop({path});
    return path;
}

void TestToolTips::hover(int row, WindowUser::Column column) const
{
    const QModelIndex cell = m_user->table()->model()->index(row, column);
    const QPoint place = m_user->table()->visualRect(cell).center();
    QHelpEvent help(QEvent::ToolTip, place, m_user->table()->viewport()->mapToGlobal(place));
    QApplication::sendEvent(m_user->table()->viewport(), &help);
}

void TestToolTips::pathIsGivenWhole()
{
    const QString plain = listOne("a & b.pdf", 10);
    hover(0, WindowUser::path);
    QCOMPARE(QToolTip::text(), plain);
    // Not rich text, whatever it looks like.
    const QString odd = listOne("<b>bold<b>&amp;.pdf", 10);
    hover(1, WindowUser::path);
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
    row(288123, 93456, succeed, "288.1 KB to 93.5 KB, 68 % saved");
    row(93456, 93456, succeed, "93.5 KB to 93.5 KB, nothing saved");
    row(93456, 288123, succeed, "93.5 KB to 288.1 KB, 208 % larger");
    row(288123, 5000, failed, "The copy has at most 5000 bytes");
    row(288123, -1, failed, "No copy was made");
}

void TestToolTips::outcomes()
{
    QFETCH(qint64, original);
    QFETCH(int, copy);
    m_engine->behave({.bytes = copy});
    listOne("a.pdf", original);
    m_user->runToTheEnd();
    hover(0, WindowUser::result);
    QTEST(QToolTip::text(), "tip");
    QTEST(m_user->verdict(0), "verdict");
}

void TestToolTips::originalGoneMeanwhile()
{
    m_engine->behave({.bytes = 93456});
    QVERIFY(QFile::remove(listOne("a.pdf", 288123)));
    m_user->runToTheEnd();
    hover(0, WindowUser::result);
    QCOMPARE(QToolTip::text(), QString("The copy has 93.5 KB"));
}

void TestToolTips::nothingToSayBeforeTheVerdict()
{
    listOne("a.pdf", 10);
    hover(0, WindowUser::path);
    QTRY_VERIFY_WITH_TIMEOUT(QToolTip::isVisible(), bound);
    hover(0, WindowUser::result);
    QTRY_VERIFY_WITH_TIMEOUT(!QToolTip::isVisible(), bound);
}

void TestToolTips::nextRunReplacesTheOutcome()
{
    m_engine->behave({.bytes = -1});
    listOne("a.pdf", 20000);
    m_user->runToTheEnd();
    m_engine->behave({.bytes = 10000});
    m_user->runToTheEnd();
    hover(0, WindowUser::result);
    QCOMPARE(QToolTip::text(), QString("20.0 KB to 10.0 KB, 50 % saved"));
}

void TestToolTips::screenReaderGetsTheOutcome()
{
    m_engine->behave({.bytes = 10000});
    listOne("a.pdf", 20000);
    m_user->runToTheEnd();
    const QTableWidgetItem *item = m_user->table()->item(0, WindowUser::result);
    QCOMPARE(item->data(Qt::AccessibleDescriptionRole).toString(),
             QString("20.0 KB to 10.0 KB, 50 % saved"));
    QAccessibleInterface *cells = QAccessible::queryAccessibleInterface(m_user->table());
    QVERIFY(cells && cells->tableInterface());
    const QAccessibleInterface *cell = cells->tableInterface()->cellAt(0, WindowUser::result);
    QCOMPARE(cell->text(QAccessible::Name), QString(succeed));
    QCOMPARE(cell->text(QAccessible::Description), QString("20.0 KB to 10.0 KB, 50 % saved"));
}

void TestToolTips::readable_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<int>("column");
    for (const auto &[desktop, dark] : {std::pair("light", false), std::pair("dark", true)}) {
        QTest::addRow("path, %s desktop", desktop) << dark << int(WindowUser::path);
        QTest::addRow("result, %s desktop", desktop) << dark << int(WindowUser::result);
    }
}

// The table's style sheet must not reach it.
void TestToolTips::readable()
{
    QFETCH(bool, dark);
    QFETCH(int, column);
    if (dark)
        QApplication::setPalette(darkDesktop());
    listOne("a.pdf", 10);
    m_user->runToTheEnd();
    hover(0, static_cast<WindowUser::Column>(column));
    QTRY_VERIFY_WITH_TIMEOUT(shownTip(), bound);
    const QImage picture = shownTip()->grab().toImage();
    QVERIFY(paintedContrast(picture, picture.rect().adjusted(2, 2, -2, -2)) >= 4.5); // no frame
}

QTEST_MAIN(TestToolTips)
#include "tst_tooltips.moc"
