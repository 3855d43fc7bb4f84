#include "core/outcometext.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using Size = std::optional<qint64>;
Q_DECLARE_METATYPE(Size)

namespace {

constexpr Size none;
constexpr qint64 gib = Q_INT64_C(1) << 30; // bytes

} // namespace

class TestOutcomeText : public QObject
{
    Q_OBJECT

private slots:
    void outcomeText_data();
    void outcomeText();
    void sizeOfFile();
};

void TestOutcomeText::outcomeText_data()
{
    QTest::addColumn<Size>("original");
    QTest::addColumn<Size>("copy");
    QTest::addColumn<Size>("threshold");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, Size original, Size copy, Size threshold,
                        const char *expected) {
        QTest::newRow(name) << original << copy << threshold << QString(expected);
    };
    row("smaller", 288123, 93456, 5000, "288.1 KB to 93.5 KB, 68 % saved");
    row("smaller, not judged by size", 288123, 93456, none, "288.1 KB to 93.5 KB, 68 % saved");
    row("from megabytes", 12345678, 543210, 5000, "12.3 MB to 543.2 KB, 96 % saved");
    row("smallest in MB", 1000000, 999900, none, "1.0 MB to 999.9 KB, less than 1 % saved");
    row("a byte saved", 100000, 99999, 5000, "100.0 KB to 100.0 KB, less than 1 % saved");
    row("almost 1 %", 100000, 99001, 5000, "100.0 KB to 99.0 KB, less than 1 % saved");
    row("1 %", 100000, 99000, 5000, "100.0 KB to 99.0 KB, 1 % saved");
    row("half a percent is rounded up", 100000, 32500, 5000, "100.0 KB to 32.5 KB, 68 % saved");
    row("almost all", 100000000, 6000, 5000, "100.0 MB to 6.0 KB, 99 % saved");
    row("as large", 93456, 93456, 5000, "93.5 KB to 93.5 KB, nothing saved");
    row("a byte larger", 100000, 100001, 5000, "100.0 KB to 100.0 KB, less than 1 % larger");
    row("larger", 93456, 95000, 5000, "93.5 KB to 95.0 KB, 2 % larger");
    row("much larger", 999, 9990, 5000, "999 B to 10.0 KB, 900 % larger");
    row("original gone", none, 93456, 5000, "The copy has 93.5 KB");
    row("original empty", 0, 93456, 5000, "The copy has 93.5 KB");
    row("no copy", 288123, none, 5000, "No copy was made");
    row("no copy, not judged by size", 288123, none, none, "No copy was made");
    row("no copy and no original", none, none, 5000, "No copy was made");
    row("5000 bytes", 288123, 5000, 5000, "The copy has at most 5000 bytes");
    row("5001 bytes", 288123, 5001, 5000, "288.1 KB to 5.0 KB, 98 % saved");
    row("empty copy", 288123, 0, 5000, "The copy has at most 5000 bytes");
    row("small copy, not judged by size", 20000, 999, none, "20.0 KB to 999 B, 95 % saved");
    row("copy of 2 GiB", 4 * gib, 2 * gib, 5000, "The copy is too large to be judged");
    row("copy of 2 GiB, not judged by size", 4 * gib, 2 * gib, none,
        "4295.0 MB to 2147.5 MB, 50 % saved");
    row("copy of 4 GiB and 5001", 8 * gib, 4 * gib + 5001, 5000,
        "8589.9 MB to 4295.0 MB, 50 % saved");
}

void TestOutcomeText::outcomeText()
{
    QFETCH(Size, original);
    QFETCH(Size, copy);
    QFETCH(Size, threshold);
    QTEST(core::outcomeText({.original = original, .copy = copy, .threshold = threshold}),
          "expected");
}

void TestOutcomeText::sizeOfFile()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("a.pdf"));
    QCOMPARE(core::sizeOfFile(file.fileName()), none);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(core::sizeOfFile(file.fileName()), Size(0));
    QVERIFY(file.resize(5001));
    QCOMPARE(core::sizeOfFile(file.fileName()), Size(5001));
}

QTEST_GUILESS_MAIN(TestOutcomeText)
#include "tst_outcometext.moc"
