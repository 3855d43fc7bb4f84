// Streams become smaller, and stand for what they stood for.
#include "documents.h"
#include "jpegs.h"
#include "parsed.h"
#include "samples.h"

#include "engine/formats/deflate.h"
#include "engine/lossless/jpegstreams.h"
#include "engine/lossless/streamcoding.h"
#include "engine/pdf/streams.h"

#include <QRandomGenerator>
#include <QTest>
#include <QtEndian>

using Object = QPDFObjectHandle;

class TestStreamCoding : public QObject
{
    Q_OBJECT

private slots:
    void smaller_data();
    void smaller();
    void emptyParameters();
    void untouched_data();
    void untouched();
    void predictor();
    void lzwWithPredictor();
    void prediction();
    void noPrediction();
    void transportOfImages();
    void fontPrograms();
    void jpeg();
    void jpegInTransport();
    void jpegUntouched_data();
    void jpegUntouched();
};

namespace {

QByteArray drawing()
{
    QByteArray lines;
    for (int i = 0; i < 99; ++i)
        lines += QByteArray::number(i * i % 211) + " 0 m 9 " + QByteArray::number(i) + " l S\n";
    return lines;
}

const QByteArray text = drawing();

QByteArray fast(const QByteArray &bytes)
{
    return qCompress(bytes, 1).mid(4);
}

// The one stream that is numbered 6.
class Document
{
public:
    Document(const QByteArray &entries, const QByteArray &bytes)
        : m_document(parsed::with({pdfStream(entries, bytes)}, "/Own 6 0 R"))
    {
    }

    operator QPDF &() { return m_document; }

    Object stream() { return m_document->getRoot().getKey("/Own"); }
    Object filter() { return stream().getDict().getKey("/Filter"); }
    Object parameters() { return stream().getDict().getKey("/DecodeParms"); }
    QByteArray raw() { return QByteArray::fromStdString(engine::rawBytesOf(stream())); }
    QByteArray decoded()
    {
        const auto bytes = engine::decodedBytesOf(stream());
        return bytes ? QByteArray::fromStdString(*bytes) : "damaged";
    }

private:
    parsed::Document m_document;
};

QByteArray hexadecimal(const QByteArray &bytes)
{
    return bytes.toHex() + '>';
}

// The code that clears the table before every byte: LZW at its plainest.
QByteArray lzw(const QByteArray &bytes)
{
    QByteArray packed;
    unsigned bits = 0;
    int count = 0;
    const auto put = [&](unsigned code) {
        bits = bits << 9 | code;
        for (count += 9; count >= 8; count -= 8)
            packed += char(bits >> (count - 8));
    };
    for (const char byte : bytes) {
        put(256);
        put(static_cast<unsigned char>(byte));
    }
    put(257);
    return packed + char(bits << (8 - count));
}

QByteArray runs(const QByteArray &bytes)
{
    QByteArray packed;
    for (const char byte : bytes)
        packed += QByteArray(1, '\0') + byte;
    return packed + '\x80';
}

QByteArray base85(const QByteArray &bytes)
{
    QByteArray letters;
    for (qsizetype place = 0; place < bytes.size(); place += 4) {
        const QByteArray four = bytes.mid(place, 4);
        auto number = qFromBigEndian<quint32>(four.leftJustified(4, '\0').constData());
        QByteArray five;
        for (int digit = 0; digit < 5; ++digit, number /= 85)
            five.prepend(char('!' + number % 85));
        letters += five.left(four.size() + 1);
    }
    return letters + "~>";
}

// Rows as PNG has them, none predicted.
QByteArray inRows(const QByteArray &bytes, int columns)
{
    QByteArray rows;
    for (qsizetype place = 0; place < bytes.size(); place += columns)
        rows += '\0' + bytes.mid(place, columns).leftJustified(columns, '\0');
    return rows;
}

// A slope with some noise: small differences of samples that are all over the range.
QByteArray slope(int width, int height, int colours)
{
    QRandomGenerator random(5);
    QByteArray samples;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width * colours; ++x)
            samples += char(3 * (x / colours) + 5 * y + 60 * (x % colours) + random.bounded(3));
    }
    return samples;
}

QByteArray imageEntries(const QByteArray &more = {})
{
    return "/Subtype /Image /Width 90 /Height 70 /BitsPerComponent 8 /ColorSpace /DeviceRGB " +
           more;
}

void recode(Document &document, bool fonts = true)
{
    engine::recodeStreams(document, {{}, fonts});
}

} // namespace

void TestStreamCoding::smaller_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("plain") << QByteArray() << text;
    QTest::newRow("no filter at all") << QByteArray("/Filter []") << text;
    QTest::newRow("deflated badly") << QByteArray("/Filter /FlateDecode") << fast(text);
    QTest::newRow("a wrong check sum")
        << QByteArray("/Filter /FlateDecode") << fast(text).chopped(4) + "sums";
    QTest::newRow("in an array") << QByteArray("/Filter [/FlateDecode] /DecodeParms [null]")
                                 << fast(text);
    QTest::newRow("hexadecimal") << QByteArray("/Filter /ASCIIHexDecode") << hexadecimal(text);
    QTest::newRow("base 85") << QByteArray("/Filter /ASCII85Decode") << base85(text);
    QTest::newRow("LZW") << QByteArray("/Filter /LZWDecode") << lzw(text);
    QTest::newRow("run lengths") << QByteArray("/Filter /RunLengthDecode") << runs(text);
    QTest::newRow("two of them") << QByteArray("/Filter [/ASCIIHexDecode /FlateDecode]")
                                 << hexadecimal(fast(text));
}

void TestStreamCoding::smaller()
{
    QFETCH(QByteArray, entries);
    QFETCH(QByteArray, bytes);
    Document document(entries, bytes);
    QCOMPARE(document.decoded(), text);
    recode(document);
    QCOMPARE(document.decoded(), text);
    QVERIFY(document.filter().isNameAndEquals("/FlateDecode"));
    QVERIFY(document.parameters().isNull());
    QVERIFY(document.raw().size() < bytes.size());
}

void TestStreamCoding::emptyParameters()
{
    Document document("/Filter [/ASCIIHexDecode /FlateDecode] /DecodeParms [<< >> << >>]",
                      hexadecimal(fast(text)));
    recode(document);
    QVERIFY(document.filter().isNameAndEquals("/FlateDecode"));
    QCOMPARE(document.decoded(), text);
}

void TestStreamCoding::untouched_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray best = QByteArray::fromStdString(engine::deflated(text.toStdString()));
    const QByteArray damaged = fast(text).chopped(9);
    QTest::newRow("metadata") << QByteArray("/Type /Metadata /Subtype /XML") << text;
    QTest::newRow("too short") << QByteArray() << QByteArray("q Q");
    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("as small as it gets") << QByteArray("/Filter /FlateDecode") << best;
    QTest::newRow("damaged") << QByteArray("/Filter /FlateDecode") << damaged;
    QTest::newRow("a fax") << QByteArray("/Filter /CCITTFaxDecode") << text;
    QTest::newRow("unknown") << QByteArray("/Filter /OwnDecode") << text;
    QTest::newRow("unknown parameters")
        << QByteArray("/Filter [/ASCIIHexDecode /FlateDecode] /DecodeParms [<< /Own 1 >> null]")
        << hexadecimal(fast(text));
    QTest::newRow("unknown below")
        << QByteArray("/Filter [/ASCIIHexDecode /OwnDecode]") << hexadecimal(text);
    QTest::newRow("predicted in an outer layer")
        << QByteArray("/Filter [/FlateDecode /FlateDecode] /DecodeParms"
                      " [<< /Predictor 15 /Columns 60 >> null]")
        << fast(inRows(fast(text), 60));
    QTest::newRow("encrypted in a way of its own")
        << QByteArray("/Filter [/FlateDecode /Crypt]") << fast(text);
    QTest::newRow("in another file") << QByteArray("/F (a) /FFilter /FlateDecode") << text;
}

void TestStreamCoding::untouched()
{
    QFETCH(QByteArray, entries);
    QFETCH(QByteArray, bytes);
    Document document(entries, bytes);
    const std::string before = document.stream().getDict().unparse();
    recode(document);
    QCOMPARE(document.raw(), bytes);
    QCOMPARE(document.stream().getDict().unparse(), before);
}

void TestStreamCoding::predictor()
{
    const QByteArray samples = QByteArray(1, '\2') + QByteArray(30, 'a');
    const QByteArray entries = "/Filter /FlateDecode /DecodeParms << /Predictor 15 /Colors 3 "
                               "/Columns 10 >>";
    Document document(entries, fast(samples.repeated(40)));
    const QByteArray decoded = document.decoded();
    QCOMPARE(decoded.size(), 30 * 40);
    recode(document);
    QCOMPARE(document.decoded(), decoded);
    QCOMPARE(document.parameters().getKey("/Predictor").getIntValue(), 15);
}

// Without its predictor, such an image would grow.
void TestStreamCoding::lzwWithPredictor()
{
    const QByteArray samples = QByteArray(1, '\2') + QByteArray(30, 'a');
    Document document("/Filter [/LZWDecode] /DecodeParms [<< /Predictor 15 /Colors 3 /Columns 10"
                      " /EarlyChange 0 >>]",
                      lzw(samples.repeated(40)));
    const QByteArray decoded = document.decoded();
    QCOMPARE(decoded.size(), 30 * 40);
    recode(document);
    QCOMPARE(document.decoded(), decoded);
    QVERIFY(document.filter().isNameAndEquals("/FlateDecode"));
    QCOMPARE(document.parameters().getKey("/Predictor").getIntValue(), 15);
    QVERIFY(!document.parameters().hasKey("/EarlyChange"));
}

void TestStreamCoding::prediction()
{
    const QByteArray samples = slope(90, 70, 3);
    Document document(imageEntries("/Filter /FlateDecode"), fast(samples));
    recode(document);
    QCOMPARE(document.decoded(), samples);
    QCOMPARE(document.parameters().getKey("/Predictor").getIntValue(), 15);
    const auto unpredicted = qsizetype(engine::deflated(samples.toStdString()).size());
    QVERIFY(document.raw().size() < unpredicted * 9 / 10);
}

void TestStreamCoding::noPrediction()
{
    // Four letters in any order; and rows that aren't whole.
    QRandomGenerator random(3);
    QByteArray letters;
    for (int i = 0; i < 90 * 70 * 3; ++i)
        letters += "aPz("[random.bounded(4)];
    for (const QByteArray &samples : {letters, slope(90, 70, 3) + "\n"}) {
        Document document(imageEntries("/Filter /FlateDecode"), fast(samples));
        recode(document);
        QCOMPARE(document.decoded(), samples);
        QVERIFY(document.parameters().isNull());
    }
}

void TestStreamCoding::transportOfImages()
{
    Document document("/Subtype /Image /Filter [/ASCIIHexDecode /CCITTFaxDecode]"
                      " /DecodeParms [null << /K -1 >>]",
                      hexadecimal("a fax"));
    recode(document);
    QCOMPARE(document.raw(), QByteArray("a fax"));
    QVERIFY(document.filter().isNameAndEquals("/CCITTFaxDecode"));
    QCOMPARE(document.parameters().getKey("/K").getIntValue(), -1);
}

void TestStreamCoding::fontPrograms()
{
    Document kept("/Length1 700", text);
    recode(kept, false);
    QCOMPARE(kept.raw(), text);
    Document packed("/Length1 700", text);
    recode(packed, true);
    QVERIFY(packed.raw().size() < text.size());
    Document repacked("/Length1 700 /Filter /FlateDecode", fast(text));
    recode(repacked, false);
    QVERIFY(repacked.raw().size() < fast(text).size());
}

void TestStreamCoding::jpeg()
{
    const QByteArray bytes = jpegs::made({.width = 300, .height = 200});
    const QByteArray entries = "/Subtype /Image /Filter /DCTDecode /DecodeParms "
                               "<< /ColorTransform 0 >>";
    Document document(entries, bytes);
    engine::recodeJpegStreams(document, {});
    QVERIFY(document.raw().size() < bytes.size());
    QVERIFY(jpegs::read(document.raw()) == jpegs::read(bytes));
    QVERIFY(document.filter().isNameAndEquals("/DCTDecode"));
    QCOMPARE(document.parameters().getKey("/ColorTransform").getIntValue(), 0);
}

void TestStreamCoding::jpegInTransport()
{
    const QByteArray bytes = jpegs::made({.width = 300, .height = 200});
    Document document("/Filter [/ASCIIHexDecode /FlateDecode /DCTDecode]"
                      " /DecodeParms [null null << /ColorTransform 0 >>]",
                      hexadecimal(fast(bytes)));
    engine::recodeJpegStreams(document, {});
    QVERIFY(jpegs::read(document.raw()) == jpegs::read(bytes));
    QVERIFY(document.raw().size() < bytes.size());
    QVERIFY(document.filter().isNameAndEquals("/DCTDecode"));
    QCOMPARE(document.parameters().getKey("/ColorTransform").getIntValue(), 0);
}

void TestStreamCoding::jpegUntouched_data()
{
    const QByteArray bytes = jpegs::made({});
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("broken off") << QByteArray("/Filter /DCTDecode") << bytes.chopped(50);
    QTest::newRow("not by its filter") << QByteArray() << bytes;
    QTest::newRow("attached") << QByteArray("/Type /EmbeddedFile /Filter /FlateDecode")
                              << fast(bytes);
}

void TestStreamCoding::jpegUntouched()
{
    QFETCH(QByteArray, entries);
    QFETCH(QByteArray, bytes);
    Document document(entries, bytes);
    engine::recodeJpegStreams(document, {});
    QCOMPARE(document.raw(), bytes);
}

QTEST_GUILESS_MAIN(TestStreamCoding)
#include "tst_streamcoding.moc"
