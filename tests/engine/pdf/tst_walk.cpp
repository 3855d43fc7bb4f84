#include "parsed.h"

#include "engine/pdf/walk.h"

#include <QTest>

using namespace parsed;

using namespace Qt::StringLiterals;
using namespace parsed;

class TestWalk : public QObject
{
    Q_OBJECT

private slots:
    void drawnOnce();
    void drawnFarDown();
    void reachable();
};

void TestWalk::drawnOnce()
{
    const QByteArray holder = "/Subtype /Form /Resources << /XObject << /Y 6 0 R /Z 5 0 R >> >>";
    Document document(showing({}, {formOf({}, holder), formOf({}, "/Subtype /Image")}));
    std::vector<int> numbers;
    auto objects = engine::drawnObjects(document);
    for (auto &object : objects)
        numbers.push_back(object.getObjectID());
    QCOMPARE(numbers, std::vector<int>({5, 6}));
}

// Forms within forms without end are nobody's drawing.
void TestWalk::drawnFarDown()
{
    QList<QByteArray> forms;
    for (int number = 5; number < 505; ++number)
        forms << formOf({}, "/Subtype /Form /Resources << /XObject << /X " +
                                QByteArray::number(number + 1) + " 0 R >> >>");
    Document document(showing({}, forms));
    const auto count = engine::drawnObjects(document).size();
    QVERIFY2(count >= 28 && count < 500, std::to_string(count).c_str());
}

void TestWalk::reachable()
{
    Document document(
        with({"<< /Inner << /Deep [<< /Last true >>] >> >>", "(nobody's)"}, "/Six 6 0 R"));
    QCOMPARE(engine::reachableObjects(document).size(), 6U);
    int last = 0;
    auto dictionaries = engine::reachableDictionaries(document);
    for (auto &dictionary : dictionaries)
        last += int(dictionary.hasKey("/Last"));
    QCOMPARE(last, 1);
}

QTEST_GUILESS_MAIN(TestWalk)
#include "tst_walk.moc"
