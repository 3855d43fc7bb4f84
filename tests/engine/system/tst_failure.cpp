#include "engine/system/failure.h"

#include <QTest>

class TestFailure : public QObject
{
    Q_OBJECT

private slots:
    void oneLine();
};

void TestFailure::oneLine()
{
    QCOMPARE(engine::onOneLine("a\nb\r\tc\x1b[0m é"), std::string("a?b??c?[0m é"));
    QCOMPARE(std::string(engine::Failure("a\nb").what()), std::string("a?b"));
    QCOMPARE(engine::Failure("a").status(), 1);
    QCOMPARE(std::string(engine::Failure::ofSystem("a", ENOENT, 127).what()),
             std::string("a: No such file or directory"));
}

QTEST_GUILESS_MAIN(TestFailure)
#include "tst_failure.moc"
