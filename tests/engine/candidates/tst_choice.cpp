#include "engine/candidates/choice.h"

#include <QTest>

using engine::Choice;
using engine::DraftFacts;

class TestChoice : public QObject
{
    Q_OBJECT

private slots:
    void choice_data();
    void choice();
    void leastSize_data();
    void leastSize();
};

void TestChoice::choice_data()
{
    QTest::addColumn<DraftFacts>("facts");
    QTest::addColumn<Choice>("wanted");
    const auto row = [](const char *name, const DraftFacts &facts, Choice wanted) {
        QTest::newRow(name) << facts << wanted;
    };
    row("smaller", {.original = 1000, .draft = 999}, Choice::Draft);
    row("as large", {.original = 1000, .draft = 1000}, Choice::Original);
    row("larger", {.original = 1000, .draft = 1001}, Choice::Original);
    row("asked for, larger", {.original = 1000, .draft = 3000, .asked = true}, Choice::Draft);
    row("asked for, smaller", {.original = 1000, .draft = 10, .asked = true}, Choice::Draft);
    row("repaired, smaller", {.original = 1000, .draft = 900, .repaired = true}, Choice::Draft);
    row("repaired, as large", {.original = 1000, .draft = 1000, .repaired = true}, Choice::Draft);
    row("repaired, a twentieth more", {.original = 100'000, .draft = 105'000, .repaired = true},
        Choice::Draft);
    row("repaired, more than that", {.original = 100'000, .draft = 105'001, .repaired = true},
        Choice::Original);
    row("repaired, small, a kilobyte more", {.original = 1000, .draft = 2024, .repaired = true},
        Choice::Draft);
    row("repaired, small, more than that", {.original = 1000, .draft = 2025, .repaired = true},
        Choice::Original);
    row("repaired and asked for",
        {.original = 1000, .draft = 2000, .asked = true, .repaired = true}, Choice::Draft);
}

void TestChoice::choice()
{
    QFETCH(DraftFacts, facts);
    QTEST(engine::choiceOf(facts), "wanted");
}

void TestChoice::leastSize_data()
{
    QTest::addColumn<int>("original");
    QTest::addColumn<int>("least");
    QTest::newRow("empty") << 0 << 0;
    QTest::newRow("not taken itself") << 5000 << 0;
    QTest::newRow("just taken") << 5001 << 5001;
    QTest::newRow("large") << 1'000'000 << 5001;
}

void TestChoice::leastSize()
{
    QFETCH(int, original);
    QFETCH(int, least);
    QCOMPARE(engine::leastSizeFor(std::uintmax_t(original)), std::uintmax_t(least));
}

QTEST_GUILESS_MAIN(TestChoice)
#include "tst_choice.moc"
