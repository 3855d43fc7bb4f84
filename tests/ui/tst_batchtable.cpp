// What adding, removing and sorting rows does to a batch run.

#include "windowtest.h"

#include <QProgressBar>
#include <QTableWidget>
#include <QTest>

class TestBatchTable : public WindowTest
{
    Q_OBJECT

private slots:
    void filesAddedDuringTheRun();
    void filesRemovedDuringTheRun();
    void verdictOfARemovedFileGoesNowhere();
    void removedFileLetsTheBatchPassOneOver();
    void verdictsInASortedTable_data();
    void verdictsInASortedTable();
    void sortDuringTheRun_data();
    void sortDuringTheRun();
};

void TestBatchTable::filesAddedDuringTheRun()
{
    m_engine->behave({.gate = true});
    list({"a.pdf"});
    startFirst();
    list({"b.pdf"});
    QCOMPARE(m_user->progressBar()->maximum(), 1);
    letThrough(2);
    QCOMPARE(m_user->progressBar()->maximum(), 2);
    QCOMPARE(m_user->progressBar()->value(), 2);
    letLastThrough();
    QCOMPARE(m_user->verdicts(), QStringList({succeed, succeed}));
}

void TestBatchTable::filesRemovedDuringTheRun()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf", "c.pdf"});
    startFirst();
    m_user->remove({1, 2});
    letLastThrough();
    QCOMPARE(m_user->verdicts(), QStringList({succeed}));
    QCOMPARE(m_engine->inputs(), QStringList({"a"}));
}

void TestBatchTable::verdictOfARemovedFileGoesNowhere()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf"});
    startFirst();
    m_user->remove({0});
    letLastThrough();
    QCOMPARE(m_user->verdicts(), QStringList({none}));
}

// The count of started files says which row is next, and the rows have moved up.
void TestBatchTable::removedFileLetsTheBatchPassOneOver()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf", "c.pdf", "d.pdf"});
    startFirst();
    letThrough(2);
    m_user->remove({0});
    letThrough(3);
    letLastThrough();
    QCOMPARE(m_engine->inputs(), QStringList({"a", "b", "d"}));
    QCOMPARE(m_user->verdicts(), QStringList({succeed, none, succeed}));
}

void TestBatchTable::verdictsInASortedTable_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("clicks");
    for (int column = 0; column < 3; ++column) {
        for (int clicks = 1; clicks <= 2; ++clicks)
            QTest::addRow("column %d, %d click(s)", column, clicks) << column << clicks;
    }
}

// A verdict may move its row; nobody's turn is lost or doubled, and every verdict is its file's.
void TestBatchTable::verdictsInASortedTable()
{
    QFETCH(int, column);
    QFETCH(int, clicks);
    const QStringList bad = {"1.pdf", "4.pdf", "5.pdf"};
    const QStringList names = {"4.pdf", "2.pdf", "7.pdf", "1.pdf", "0.pdf", "5.pdf", "3.pdf"};
    list(names);
    m_user->clickHeader(WindowUser::Column(column), clicks);
    for (int batch = 0; batch < 3; ++batch) {
        // The verdicts change from batch to batch, and the order by result with them.
        for (const QString &name : names)
            m_engine->behave({.bytes = bad.contains(name) == (batch % 2 == 0) ? 10 : 6000},
                             name.chopped(4));
        m_user->runToTheEnd();
        QStringList converted = m_engine->inputs().mid(7 * batch);
        QCOMPARE(converted.size(), 7);
        converted.sort();
        QCOMPARE(converted, QStringList({"0", "1", "2", "3", "4", "5", "7"}));
        for (const QString &name : names)
            QCOMPARE(m_user->verdictOf(name),
                     QString(bad.contains(name) == (batch % 2 == 0) ? failed : succeed));
    }
}

void TestBatchTable::sortDuringTheRun_data()
{
    verdictsInASortedTable_data();
}

void TestBatchTable::sortDuringTheRun()
{
    QFETCH(int, column);
    QFETCH(int, clicks);
    const QStringList bad = {"1.pdf", "4.pdf", "5.pdf"};
    m_engine->behave({.gate = true});
    for (const QString &name : bad)
        m_engine->behave({.bytes = 10, .gate = true}, name.chopped(4));
    const QStringList names = {"4.pdf", "2.pdf", "7.pdf", "1.pdf", "0.pdf", "5.pdf", "3.pdf"};
    list(names);
    m_user->run();
    for (int started = 1; started <= 7; ++started) {
        awaitStarts(started);
        if (started == 3)
            m_user->clickHeader(WindowUser::Column(column), clicks);
        m_engine->open();
    }
    m_user->awaitEnd();
    QStringList converted = m_engine->inputs();
    converted.sort();
    QCOMPARE(converted, QStringList({"0", "1", "2", "3", "4", "5", "7"}));
    for (const QString &name : names)
        QCOMPARE(m_user->verdictOf(name), QString(bad.contains(name) ? failed : succeed));
}

QTEST_MAIN(TestBatchTable)
#include "tst_batchtable.moc"
