#include "parsed.h"

#include "engine/pdfa/viewing.h"

#include <QTest>

using namespace parsed;

class TestViewing : public QObject
{
    Q_OBJECT

private slots:
    void viewing_data();
    void viewing();
};

void TestViewing::viewing_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<bool>("stays");
    for (const char *entry : {"/Lang (de)", "/PageLayout /TwoColumnRight", "/PageMode /UseNone",
                              "/PageMode /UseOutlines", "/PageMode /UseThumbs",
                              "/PageMode /FullScreen", "/ViewerPreferences << /Direction /R2L >>"})
        QTest::newRow(entry) << QByteArray(entry) << true;
    for (const char *entry : {"/Lang 7", "/PageLayout 7", "/PageMode /UseOC",
                              "/PageMode /UseAttachments", "/ViewerPreferences []"})
        QTest::newRow(entry) << QByteArray(entry) << false;
}

void TestViewing::viewing()
{
    QFETCH(QByteArray, entry);
    QFETCH(bool, stays);
    Document original(with({}, entry));
    Document copy(with({}));
    engine::restoreViewing(copy, original);
    const std::string key = entry.left(entry.indexOf(' ')).toStdString();
    QVERIFY(original->getRoot().hasKey(key));
    QCOMPARE(copy->getRoot().hasKey(key), stays);
    if (stays)
        QCOMPARE(copy->getRoot().getKey(key).unparse(), original->getRoot().getKey(key).unparse());
}

QTEST_GUILESS_MAIN(TestViewing)
#include "tst_viewing.moc"
