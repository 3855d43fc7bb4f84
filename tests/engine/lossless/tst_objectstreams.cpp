// Which copies may have object streams.
#include "engine/lossless/objectstreams.h"

#include <QTest>

class TestObjectStreams : public QObject
{
    Q_OBJECT

private slots:
    void may_data();
    void may();
};

void TestObjectStreams::may_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<bool>("present");
    QTest::addColumn<QByteArray>("standard");
    QTest::addColumn<bool>("may");
    const auto row = [](const char *version, bool present, const char *standard, bool may) {
        QTest::addRow("%s %s%s", version, present ? "present " : "", standard)
            << QByteArray(version) << present << QByteArray(standard) << may;
    };
    row("1.5", false, "", true);
    row("1.7", false, "", true);
    row("1.10", false, "", true);
    row("2.0", false, "", true);
    row("1.4", false, "", false);
    row("1.3", false, "", false);
    row("1.4", true, "", true);
    row("", false, "", false);
    row("", true, "", true);
    row("1.x", false, "", false);
    row("1.5", false, "PDF/A-1", false);
    row("1.4", true, "PDF/A-1", false);
    row("1.6", false, "PDF/X-1a:2003", false);
    row("1.6", false, "PDF/X-3:2002", false);
    row("1.7", false, "PDF/A-2", true);
    row("1.4", false, "PDF/A-2", false);
    row("1.6", false, "PDF/X-4", true);
    row("1.7", false, "PDF/UA-1", true);
}

void TestObjectStreams::may()
{
    QFETCH(QByteArray, version);
    QFETCH(bool, present);
    QFETCH(QByteArray, standard);
    engine::ObjectStreamFacts facts = {version.toStdString(), present, {}};
    if (!standard.isEmpty())
        facts.standard = standard.toStdString();
    QTEST(engine::mayHaveObjectStreams(facts), "may");
}

QTEST_GUILESS_MAIN(TestObjectStreams)
#include "tst_objectstreams.moc"
