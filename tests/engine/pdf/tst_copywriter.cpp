#include "documents.h"
#include "parsed.h"
#include "samples.h"

#include "engine/pdf/copywriter.h"

#include <QTemporaryFile>
#include <QTest>

class TestCopyWriter : public QObject
{
    Q_OBJECT

private slots:
    void size_data();
    void size();
    void lineBreaks();
};

void TestCopyWriter::size_data()
{
    QTest::addColumn<bool>("objectStreams");
    QTest::addColumn<qulonglong>("leastSize");
    QTest::newRow("plain") << false << 0ULL;
    QTest::newRow("object streams") << true << 0ULL;
    QTest::newRow("filled up") << false << 5001ULL;
    QTest::newRow("filled up, object streams") << true << 5001ULL;
}

// What would be written is as large as what is written.
void TestCopyWriter::size()
{
    QFETCH(bool, objectStreams);
    QFETCH(qulonglong, leastSize);
    parsed::Document document(documents::withParts({}));
    QTemporaryFile file;
    QVERIFY(file.open());
    engine::WriteOptions options;
    options.newObjectStreams = objectStreams;
    options.leastSize = leastSize;
    const std::uintmax_t size = engine::copySize(document, options);
    QVERIFY(size >= leastSize && size > 0);
    QCOMPARE(qulonglong(size), qulonglong(engine::writeCopy(document, file.handle(), options)));
    QCOMPARE(qulonglong(size), qulonglong(QFileInfo(file.fileName()).size()));
}

// PDF/A wants one before each endstream.
void TestCopyWriter::lineBreaks()
{
    parsed::Document document(
        pdfOf({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
               "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] /Contents 4 0 R >>",
               pdfStream({}, "q Q")}));
    QTemporaryFile file;
    QVERIFY(file.open());
    QVERIFY(engine::writeCopy(document, file.handle(), {}) > 0);
    QVERIFY(file.seek(0));
    const QByteArray copy = file.readAll();
    QCOMPARE(copy.count("endstream"), 1);
    QVERIFY(copy.contains("q Q\nendstream"));
}

QTEST_GUILESS_MAIN(TestCopyWriter)
#include "tst_copywriter.moc"
