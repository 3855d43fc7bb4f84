#include "core/outputname.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestOutputName : public QObject
{
    Q_OBJECT

private slots:
    void freeName_data();
    void freeName();
    void takenNames();
};

void TestOutputName::freeName_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("input");
    QTest::addColumn<QStringList>("taken");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const QString &folder, const QString &input,
                        const QStringList &taken, const QString &expected) {
        QTest::newRow(name) << folder << input << taken << expected;
    };
    row("plain", "/out", "/in/a.pdf", {}, "/out/a.pdf");
    row("several dots", "/out", "/in/report.final.old.pdf", {}, "/out/report.pdf");
    row("dot in the folder", "/out.d", "/in.d/a.pdf", {"/out.d/a.pdf"}, "/out.d/a0.pdf");
    row("taken", "/out", "/in/a.pdf", {"/out/a.pdf"}, "/out/a0.pdf");
    row("taken twice", "/out", "/in/a.pdf", {"/out/a.pdf", "/out/a0.pdf"}, "/out/a00.pdf");
    row("upper case", "/out", "/in/A.PDF", {}, "/out/A.pdf");
    row("no suffix", "/out", "/in/a", {}, "/out/a.pdf");
    row("no base name", "/out", "/in/.pdf", {"/out/.pdf"}, "/out/0.pdf");
    row("blanks", "/my out", "/in/a b.pdf", {"/my out/a b.pdf"}, "/my out/a b0.pdf");
    row("relative", "out", "/in/a.pdf", {}, "out/a.pdf");
    row("slash at the end", "/out/", "/in/a.pdf", {}, "/out//a.pdf");
    row("non-ASCII", "/out", QStringLiteral("/in/報告書 №7.pdf"), {},
        QStringLiteral("/out/報告書 №7.pdf"));
}

void TestOutputName::freeName()
{
    QFETCH(QString, folder);
    QFETCH(QString, input);
    QFETCH(QStringList, taken);
    const auto isTaken = [&taken](const QString &path) { return taken.contains(path); };
    QTEST(core::freeOutputPath(folder, input, isTaken), "expected");
}

void TestOutputName::takenNames()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("file"));
    const QString link = folder.filePath(QStringLiteral("link"));
    QVERIFY(!core::fileSystemEntryExists(file));
    QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    QVERIFY(core::fileSystemEntryExists(file));
    QVERIFY(core::fileSystemEntryExists(folder.path()));
    QVERIFY(QFile::link(folder.filePath(QStringLiteral("nowhere")), link));
    QVERIFY(core::fileSystemEntryExists(link));
}

QTEST_GUILESS_MAIN(TestOutputName)
#include "tst_outputname.moc"
