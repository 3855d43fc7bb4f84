#include "engine/process/stallwatch.h"

#include <QTest>

using namespace std::chrono_literals;

class TestStallWatch : public QObject
{
    Q_OBJECT

private slots:
    void lost();
    void writes();
    void endsSteps();
    void writesWithoutEnd();
    void defaults();

private:
    engine::Limits m_limits{.stall = 10s, .step = 30s};
};

void TestStallWatch::lost()
{
    engine::StallWatch watch(m_limits);
    QCOMPARE(watch.objection(0s, {}), std::string());
    QCOMPARE(watch.objection(9.9s, {}), std::string());
    QCOMPARE(watch.objection(10s, {}), std::string("used up its time without getting on"));
}

void TestStallWatch::writes()
{
    engine::StallWatch watch(m_limits);
    QCOMPARE(watch.objection(9s, {.bytes = 1}), std::string());
    QCOMPARE(watch.objection(18s, {.bytes = 1}), std::string());
    QCOMPARE(watch.objection(19s, {.bytes = 1}),
             std::string("used up its time without getting on"));
}

// As long as it likes.
void TestStallWatch::endsSteps()
{
    engine::StallWatch watch(m_limits);
    for (int step = 1; step <= 10'000; ++step)
        QCOMPARE(watch.objection(std::chrono::seconds(9 * step), {.steps = std::uintmax_t(step)}),
                 std::string());
}

void TestStallWatch::writesWithoutEnd()
{
    engine::StallWatch watch(m_limits);
    QCOMPARE(watch.objection(5s, {.bytes = 1, .steps = 1}), std::string());
    for (int second = 6; second < 35; ++second)
        QCOMPARE(watch.objection(std::chrono::seconds(second),
                                 {.bytes = std::uintmax_t(second), .steps = 1}),
                 std::string());
    QCOMPARE(watch.objection(35s, {.bytes = 35, .steps = 1}),
             std::string("used up its time on one page"));
}

// The figures that SECURITY.md gives.
void TestStallWatch::defaults()
{
    QCOMPARE(engine::Limits().stall, std::chrono::duration<double>(60s));
    QCOMPARE(engine::Limits().step, std::chrono::duration<double>(300s));
}

QTEST_GUILESS_MAIN(TestStallWatch)
#include "tst_stallwatch.moc"
