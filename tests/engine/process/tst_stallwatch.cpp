#include "engine/process/limits.h"
#include "engine/process/stallwatch.h"

#include <QTest>

class TestStallWatch : public QObject
{
    Q_OBJECT

private slots:
    void stall();
    void slowButSound();
};

void TestStallWatch::stall()
{
    using Time = engine::StallWatch::Time;
    engine::StallWatch watch(Time(10));
    QVERIFY(!watch.isStalled(Time(0), 0));
    QVERIFY(!watch.isStalled(Time(9.9), 0));
    QVERIFY(!watch.isStalled(Time(9.95), 1)); // growth
    QVERIFY(!watch.isStalled(Time(19.9), 1));
    QVERIFY(!watch.isStalled(Time(19.94), 0)); // a temporary file was removed
    QVERIFY(watch.isStalled(Time(29.95), 0));
}

void TestStallWatch::slowButSound()
{
    using Time = engine::StallWatch::Time;
    engine::StallWatch watch(engine::Limits().stall);
    for (int minute = 1; minute <= 24 * 60; ++minute)
        QVERIFY(!watch.isStalled(std::chrono::minutes(minute), std::uintmax_t(minute / 4)));
    QVERIFY(watch.isStalled(Time(25 * 3600), 360));
}

QTEST_GUILESS_MAIN(TestStallWatch)
#include "tst_stallwatch.moc"
