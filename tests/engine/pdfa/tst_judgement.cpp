#include "engine/pdfa/judgement.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestJudgement : public QObject
{
    Q_OBJECT

private slots:
    void judgement_data();
    void judgement();
    void warning();
};

void TestJudgement::judgement_data()
{
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("document");
    QTest::addColumn<int>("copy");
    QTest::addColumn<QString>("objection");
    const QString nothing = u"Ghostscript could not open the document or wrote no page of it"_s;
    constexpr int unknown = -1;
    QTest::newRow("all pages") << 3 << 3 << 3 << QString();
    QTest::newRow("one page") << 1 << 1 << 1 << QString();
    QTest::newRow("more pages than libqpdf finds") << 3 << 2 << 3 << QString();
    QTest::newRow("only Ghostscript reads the document") << 3 << unknown << 3 << QString();
    QTest::newRow("a stub") << 0 << 1 << 1 << nothing;
    QTest::newRow("a stub of what nobody reads") << 0 << unknown << 1 << nothing;
    QTest::newRow("Ghostscript did not say") << unknown << 1 << 1 << nothing;
    QTest::newRow("pages lost") << 2 << 3 << 2 << u"the copy has 2 of 3 pages"_s;
    QTest::newRow("pages lost on the way") << 3 << unknown << 2 << u"the copy has 2 of 3 pages"_s;
    QTest::newRow("damaged copy") << 3 << 3 << unknown << u"the copy is damaged"_s;
}

void TestJudgement::judgement()
{
    QFETCH(int, written);
    QFETCH(int, document);
    QFETCH(int, copy);
    QFETCH(QString, objection);
    const auto known = [](int pages) {
        return pages < 0 ? std::optional<int>() : std::optional(pages);
    };
    QCOMPARE(
        QString::fromStdString(engine::objectionTo({known(written), known(document), known(copy)})),
        objection);
}

void TestJudgement::warning()
{
    QCOMPARE(engine::objectionTo({3, 3, 3, true}),
             std::string("Ghostscript could not make out all of the document"));
    QCOMPARE(engine::objectionTo({2, 3, 2, true}), std::string("the copy has 2 of 3 pages"));
}

QTEST_GUILESS_MAIN(TestJudgement)
#include "tst_judgement.moc"
