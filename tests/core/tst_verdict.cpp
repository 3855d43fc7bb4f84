#include "core/verdict.h"

#include <QTest>

using core::Verdict;
Q_DECLARE_METATYPE(core::Verdict)

class TestVerdict : public QObject
{
    Q_OBJECT

private slots:
    void judge_data();
    void judge();
};

void TestVerdict::judge_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<bool>("exists");
    QTest::addColumn<Verdict>("expected");

    QTest::newRow("missing") << Q_INT64_C(0) << false << Verdict::failed;
    QTest::newRow("empty") << Q_INT64_C(0) << true << Verdict::failed;
    QTest::newRow("5000") << Q_INT64_C(5000) << true << Verdict::failed;
    QTest::newRow("5001") << Q_INT64_C(5001) << true << Verdict::succeed;
    QTest::newRow("gone since") << Q_INT64_C(5001) << false << Verdict::failed;
    QTest::newRow("2 GiB less 1") << Q_INT64_C(0x7fffffff) << true << Verdict::succeed;
    QTest::newRow("2 GiB") << Q_INT64_C(0x80000000) << true << Verdict::failed;
    QTest::newRow("4 GiB and 5000") << Q_INT64_C(0x100001388) << true << Verdict::failed;
    QTest::newRow("4 GiB and 5001") << Q_INT64_C(0x100001389) << true << Verdict::succeed;
}

void TestVerdict::judge()
{
    QFETCH(qint64, size);
    QFETCH(bool, exists);
    QTEST(core::judge(size, exists), "expected");
}

QTEST_GUILESS_MAIN(TestVerdict)
#include "tst_verdict.moc"
