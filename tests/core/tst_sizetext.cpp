#include "core/sizetext.h"

#include <QTest>

class TestSizeText : public QObject
{
    Q_OBJECT

private slots:
    void text_data();
    void text();
    void briefText_data();
    void briefText();
};

void TestSizeText::text_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("expected");

    QTest::newRow("nothing") << Q_INT64_C(0) << QString();
    QTest::newRow("negative") << Q_INT64_C(-1) << QString();
    QTest::newRow("one byte") << Q_INT64_C(1) << QStringLiteral("         0.001 KB");
    QTest::newRow("rounded up") << Q_INT64_C(193947) << QStringLiteral("       193.947 KB");
    QTest::newRow("largest in KB") << Q_INT64_C(1048576) << QStringLiteral("      1048.576 KB");
    QTest::newRow("smallest in MB") << Q_INT64_C(1048577) << QStringLiteral("         1.049 MB");
    QTest::newRow("2 GiB less 1") << Q_INT64_C(0x7fffffff) << QStringLiteral("      2147.484 MB");
    QTest::newRow("2 GiB") << Q_INT64_C(0x80000000) << QString();
    QTest::newRow("4 GiB") << Q_INT64_C(0x100000000) << QString();
    QTest::newRow("4 GiB and 1000")
        << Q_INT64_C(0x1000003e8) << QStringLiteral("         1.000 KB");
}

void TestSizeText::text()
{
    QFETCH(qint64, bytes);
    QTEST(core::sizeText(bytes), "expected");
}

void TestSizeText::briefText_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("expected");

    QTest::newRow("nothing") << Q_INT64_C(0) << "0 B";
    QTest::newRow("largest in B") << Q_INT64_C(999) << "999 B";
    QTest::newRow("smallest in KB") << Q_INT64_C(1000) << "1.0 KB";
    QTest::newRow("rounded up") << Q_INT64_C(193960) << "194.0 KB";
    QTest::newRow("largest in KB") << Q_INT64_C(999949) << "999.9 KB";
    QTest::newRow("smallest in MB") << Q_INT64_C(1000000) << "1.0 MB";
    QTest::newRow("4 GiB and 1000") << Q_INT64_C(0x1000003e8) << "4295.0 MB";
    QTest::newRow("smallest in GB") << Q_INT64_C(10'000'000'000) << "10.0 GB";
}

void TestSizeText::briefText()
{
    QFETCH(qint64, bytes);
    QTEST(core::briefSizeText(bytes), "expected");
}

QTEST_GUILESS_MAIN(TestSizeText)
#include "tst_sizetext.moc"
