// Whatever the window can send, the engine takes.
#include "core/engineswitches.h"
#include "engine/request/request.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestLine : public QObject
{
    Q_OBJECT

private slots:
    void everySwitchIsTaken_data();
    void everySwitchIsTaken();
};

void TestLine::everySwitchIsTaken_data()
{
    QTest::addColumn<core::Values>("values");
    core::Values defaults;
    for (const core::SettingsKey &key : core::settingsKeys()) {
        if (!key.engineDefault.isNull())
            defaults.insert(key.name, key.engineDefault);
    }
    QTest::newRow("defaults") << defaults;
    for (const core::SettingsKey &key : core::settingsKeys()) {
        for (const char *value : {"Ok", "No", "0", "1", "2", "3", "4"}) {
            core::Values values = defaults;
            values.insert(key.name, QString::fromLatin1(value));
            QTest::addRow("%s %s", key.name.latin1(), value) << values;
        }
    }
}

void TestLine::everySwitchIsTaken()
{
    QFETCH(core::Values, values);
    const QString switches = core::engineSwitches(values).trimmed();
    std::vector<std::string> words;
    for (const QString &word : switches.split(u' '))
        words.push_back(word.toStdString());
    for (const char *word : {"-sOutputFile=/out/a.pdf", "-f", "/in/a.pdf", "/tmp/pdfinfo.txt"})
        words.emplace_back(word);
    const engine::Plan plan = engine::planFor(words);
    const auto *refusal = std::get_if<engine::Refusal>(&plan);
    QVERIFY2(!refusal, refusal ? refusal->reason.c_str() : "");
    QVERIFY(std::holds_alternative<engine::Request>(plan));
}

QTEST_GUILESS_MAIN(TestLine)
#include "tst_engine_line.moc"
