#include "engine/process/limits.h"

#include <QTest>

class TestLimits : public QObject
{
    Q_OBJECT

private slots:
    void outputFor();
};

void TestLimits::outputFor()
{
    constexpr std::uintmax_t gibibyte = std::uintmax_t(1) << 30;
    const engine::Limits limits;
    QCOMPARE(limits.outputFor(0), 4 * gibibyte);
    QCOMPARE(limits.outputFor(gibibyte / 16), 4 * gibibyte);
    QCOMPARE(limits.outputFor(gibibyte), 50 * gibibyte);
}

QTEST_GUILESS_MAIN(TestLimits)
#include "tst_limits.moc"
