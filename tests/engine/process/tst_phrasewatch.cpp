#include "engine/process/phrasewatch.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestPhraseWatch : public QObject
{
    Q_OBJECT

private slots:
    void phrase_data();
    void phrase();
};

void TestPhraseWatch::phrase_data()
{
    QTest::addColumn<QStringList>("pieces");
    QTest::addColumn<bool>("seen");
    QTest::newRow("at once") << QStringList{u"Output may be incorrect.\n"_s} << true;
    QTest::newRow("in two") << QStringList{u"Output may b"_s, u"e incorrect."_s} << true;
    QTest::newRow("letter by letter")
        << u"may be incorrect"_s.split(QString(), Qt::SkipEmptyParts) << true;
    QTest::newRow("after much else")
        << QStringList{QString(9999, u'm'), u"may be inc"_s, u"orrect"_s, u"x"_s} << true;
    QTest::newRow("never") << QStringList{u"may be"_s, u" correct, incorrect"_s} << false;
    QTest::newRow("nothing") << QStringList{QString()} << false;
}

void TestPhraseWatch::phrase()
{
    QFETCH(QStringList, pieces);
    engine::PhraseWatch watch("may be incorrect");
    for (const QString &piece : pieces)
        watch.take(piece.toStdString());
    QTEST(watch.hasSeen(), "seen");
    engine::PhraseWatch none("");
    none.take("anything");
    QVERIFY(!none.hasSeen());
}

QTEST_GUILESS_MAIN(TestPhraseWatch)
#include "tst_phrasewatch.moc"
