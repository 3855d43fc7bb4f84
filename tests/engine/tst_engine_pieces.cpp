#include "engine/formats/downsampling.h"
#include "engine/formats/marktexts.h"
#include "engine/formats/tounicode.h"
#include "engine/formats/xmp.h"
#include "engine/ghostscript/installation.h"
#include "engine/pdfa/judgement.h"
#include "engine/process/limits.h"
#include "engine/process/phrasewatch.h"
#include "engine/process/stallwatch.h"
#include "engine/system/failure.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class TestPieces : public QObject
{
    Q_OBJECT

private slots:
    void judgement_data();
    void judgement();
    void warning();
    void phrase_data();
    void phrase();
    void xmpDate_data();
    void xmpDate();
    void xmpPacket();
    void xml_data();
    void xml();
    void utf8_data();
    void utf8();
    void factors_data();
    void factors();
    void greysStay();
    void edgesStay();
    void subsamples();
    void letters_data();
    void letters();
    void lettersEnd();
    void mark_data();
    void mark();
    void stall();
    void slowButSound();
    void outputFor();
    void oneLine();
    void configuredGhostscript();
    void ghostscriptInPath();
    void ghostscriptsFiles();
};

void TestPieces::judgement_data()
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

void TestPieces::warning()
{
    QCOMPARE(engine::objectionTo({3, 3, 3, true}),
             std::string("Ghostscript could not make out all of the document"));
    QCOMPARE(engine::objectionTo({2, 3, 2, true}), std::string("the copy has 2 of 3 pages"));
}

void TestPieces::phrase_data()
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

void TestPieces::phrase()
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

void TestPieces::xmpDate_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("expected");
    QTest::newRow("east") << u"D:20240131235958+01'30'"_s << u"2024-01-31T23:59:58+01:30"_s;
    QTest::newRow("west") << u"D:20240131235958-08'00"_s << u"2024-01-31T23:59:58-08:00"_s;
    QTest::newRow("hours only") << u"D:20240131235958-08"_s << u"2024-01-31T23:59:58-08:00"_s;
    QTest::newRow("zulu") << u"D:20240131235958Z"_s << u"2024-01-31T23:59:58Z"_s;
    QTest::newRow("no zone") << u"D:20240131235958"_s << u"2024-01-31T23:59:58Z"_s;
    QTest::newRow("a zone of nonsense") << u"D:20240131235958+x"_s << u"2024-01-31T23:59:58Z"_s;
    QTest::newRow("day only") << u"D:20240131"_s << QString();
    QTest::newRow("no date") << u"yesterday"_s << QString();
    QTest::newRow("nothing") << QString() << QString();
}

void TestPieces::xmpDate()
{
    QFETCH(QString, date);
    QTEST(QString::fromStdString(engine::xmpDate(date.toStdString())), "expected");
}

void TestPieces::xmpPacket()
{
    engine::Description description;
    description.title = "Zoë & <Co> ";
    description.author = "A";
    description.created = "D:20240131235958Z";
    const auto packet = QString::fromStdString(engine::xmpPacket(description, false));
    QVERIFY(packet.contains(u"<dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">"
                            "Zoë &amp; &lt;Co&gt; </rdf:li></rdf:Alt></dc:title>"_s));
    QVERIFY(packet.contains("<dc:creator><rdf:Seq><rdf:li>A</rdf:li></rdf:Seq></dc:creator>"_L1));
    QVERIFY(packet.contains("<xmp:CreateDate>2024-01-31T23:59:58Z</xmp:CreateDate>"_L1));
    QVERIFY(!packet.contains("ModifyDate"_L1));
    QVERIFY(!packet.contains("dc:description"_L1));
    QVERIFY(!packet.contains("pdfaid:part>"_L1));
    const auto claim = QString::fromStdString(engine::xmpPacket({}, true));
    QVERIFY(claim.contains("<pdfaid:part>1</pdfaid:part>"_L1));
    QVERIFY(claim.contains("<pdfaid:conformance>B</pdfaid:conformance>"_L1));
}

void TestPieces::xml_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("plain") << QByteArray("Zo\xc3\xab & Co") << QByteArray("Zo\xc3\xab & Co");
    QTest::newRow("controls") << QByteArray("a\n\t\x1b\x7f"
                                            "b")
                              << QByteArray("a    b");
    QTest::newRow("half a pair") << QByteArray("a\xed\xa0\x80z") << QByteArray("a z");
    QTest::newRow("before the pairs") << QByteArray("\xed\x9f\xbf") << QByteArray("\xed\x9f\xbf");
    QTest::newRow("no letters") << QByteArray("\xef\xbf\xbe\xef\xbf\xbf") << QByteArray("  ");
    QTest::newRow("one before") << QByteArray("\xef\xbf\xbd") << QByteArray("\xef\xbf\xbd");
    QTest::newRow("nothing") << QByteArray("") << QByteArray("");
}

void TestPieces::xml()
{
    QFETCH(QByteArray, text);
    QTEST(QByteArray::fromStdString(engine::writableInXml(text.toStdString())), "expected");
}

void TestPieces::utf8_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("expected");
    QTest::newRow("ASCII") << QByteArray("Zoe") << false;
    QTest::newRow("two bytes") << QByteArray("Zo\xc3\xab") << true;
    QTest::newRow("three bytes") << QByteArray("\xe5\xa0\xb1 1") << true;
    QTest::newRow("four bytes") << QByteArray("\xf0\x9f\x99\x82") << true;
    QTest::newRow("Latin-1") << QByteArray("Zo\xeb") << false;
    QTest::newRow("Latin-1 inside") << QByteArray("Zo\xeb!!") << false;
    QTest::newRow("cut off") << QByteArray("Zo\xc3") << false;
    QTest::newRow("a follower alone") << QByteArray("\xab") << false;
    QTest::newRow("too long a form") << QByteArray("\xc1\x81") << false;
    QTest::newRow("UTF-16") << QByteArray("\xfe\xff\x00Z", 4) << false;
    QTest::newRow("both kinds") << QByteArray("\xc3\xab\xeb") << false;
    QTest::newRow("nothing") << QByteArray() << false;
}

void TestPieces::utf8()
{
    QFETCH(QByteArray, text);
    QTEST(engine::isUtf8BeyondAscii(text.toStdString()), "expected");
}

void TestPieces::judgement()
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

void TestPieces::factors_data()
{
    QTest::addColumn<int>("large");
    QTest::addColumn<int>("small");
    QTest::addColumn<int>("factor");
    QTest::newRow("halves") << 100 << 50 << 2;
    QTest::newRow("a half and one") << 101 << 51 << 2;
    QTest::newRow("a half less one") << 101 << 50 << 2;
    QTest::newRow("thirds") << 100 << 34 << 3;
    QTest::newRow("whole") << 100 << 100 << 0;
    QTest::newRow("larger") << 100 << 101 << 0;
    QTest::newRow("no whole number") << 100 << 60 << 0;
    QTest::newRow("to one") << 7 << 1 << 7;
    QTest::newRow("to nothing") << 7 << 0 << 0;
    QTest::newRow("of nothing") << 0 << 7 << 0;
}

void TestPieces::factors()
{
    QFETCH(int, large);
    QFETCH(int, small);
    QTEST(int(engine::factorOf(quint32(large), quint32(small))), "factor");
}

// Every pixel is black with this chance in so many of 16.
static engine::Bitmap greyBitmap(quint32 edge, int sixteenths)
{
    QRandomGenerator random(1);
    auto bitmap = *engine::Bitmap::blank(edge, edge);
    for (quint32 y = 0; y < edge; ++y) {
        for (quint32 x = 0; x < edge; ++x) {
            if (random.bounded(16) < sixteenths)
                bitmap.row(y)[x / 8] = quint8(bitmap.row(y)[x / 8] | (0x80 >> x % 8));
        }
    }
    return bitmap;
}

static double blackShareOf(const engine::Bitmap &bitmap)
{
    double black = 0;
    for (quint32 y = 0; y < bitmap.height(); ++y) {
        for (quint32 x = 0; x < bitmap.width(); ++x)
            black += (bitmap.row(y)[x / 8] & (0x80 >> x % 8)) != 0 ? 1 : 0;
    }
    return black / bitmap.width() / bitmap.height();
}

void TestPieces::greysStay()
{
    for (const int sixteenths : {0, 1, 4, 8, 13, 16}) {
        const auto bitmap = greyBitmap(300, sixteenths);
        for (const quint32 factor : {1U, 2U, 3U, 7U}) {
            const auto small = engine::downsampled(bitmap, factor, 300 / factor, 300 / factor);
            QVERIFY(small);
            QCOMPARE(small->width(), 300 / factor);
            QVERIFY2(qAbs(blackShareOf(*small) - blackShareOf(bitmap)) < 0.02,
                     qPrintable(u"%1 %2"_s.arg(sixteenths).arg(factor)));
        }
    }
}

// A stroke of four pixels makes one of two, with nothing around it.
void TestPieces::edgesStay()
{
    auto bitmap = *engine::Bitmap::blank(64, 64);
    for (quint32 y = 0; y < 64; ++y)
        bitmap.row(y)[3] = 0xf0;
    const auto small = engine::downsampled(bitmap, 2, 32, 32);
    for (quint32 y = 0; y < 32; ++y)
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(small->row(y)), 4).toHex(),
                 QByteArray("000c0000"));
    QVERIFY(!engine::downsampled(bitmap, 2, 33, 32));
    QVERIFY(!engine::downsampled(bitmap, 2, 0, 32));
    QVERIFY(engine::downsampled(bitmap, 5, 13, 13));
}

void TestPieces::subsamples()
{
    const auto bitmap = greyBitmap(201, 8);
    auto small = *engine::Bitmap::blank(67, 67);
    for (quint32 y = 0; y < 67; ++y) {
        for (quint32 x = 0; x < 67; ++x) {
            const quint32 place = x * 3 + 1;
            if ((bitmap.row(y * 3 + 2)[place / 8] & (0x80 >> place % 8)) != 0)
                small.row(y)[x / 8] = quint8(small.row(y)[x / 8] | (0x80 >> x % 8));
        }
    }
    QVERIFY(engine::subsampleOf(small, bitmap, 3) == engine::Subsample::Same);
    small.invert();
    QVERIFY(engine::subsampleOf(small, bitmap, 3) == engine::Subsample::Opposite);
    QVERIFY(engine::subsampleOf(greyBitmap(67, 8), bitmap, 3) == engine::Subsample::No);
}

void TestPieces::letters_data()
{
    QTest::addColumn<QByteArray>("cmap");
    QTest::addColumn<QStringList>("letters"); // code=letters, in hex
    QTest::newRow("codes") << QByteArray(
                                  "2 beginbfchar\n<0044> <0061>\n<004B><062D064E>\nendbfchar")
                           << QStringList{u"0044=0061"_s, u"004b=062d064e"_s};
    QTest::newRow("range") << QByteArray("beginbfrange <00fe> <0101> <00fe> endbfrange")
                           << QStringList{u"00fe=00fe"_s, u"00ff=00ff"_s, u"0100=0100"_s,
                                          u"0101=0101"_s};
    QTest::newRow("list") << QByteArray("beginbfrange <01> <02> [<0041> <00420043>] endbfrange")
                          << QStringList{u"01=0041"_s, u"02=00420043"_s};
    QTest::newRow("both") << QByteArray("1 beginbfchar <03> <0041> endbfchar /x << /y 1 >> "
                                        "1 beginbfrange <05> <05> <0042> endbfrange")
                          << QStringList{u"03=0041"_s, u"05=0042"_s};
    QTest::newRow("nothing for a code")
        << QByteArray("beginbfchar <03> <> endbfchar") << QStringList{u"03="_s};
    QTest::newRow("code space only")
        << QByteArray("begincodespacerange <00> <ff> endcodespacerange") << QStringList();
    QTest::newRow("cut off") << QByteArray("beginbfchar <03> <0041> <04")
                             << QStringList{u"03=0041"_s};
    QTest::newRow("nonsense") << QByteArray("beginbfrange <01> ] [ <02> >> <zz") << QStringList();
    QTest::newRow("backwards") << QByteArray("beginbfrange <05> <01> <0041> endbfrange")
                               << QStringList{u"05=0041"_s};
}

void TestPieces::letters()
{
    QFETCH(QByteArray, cmap);
    QStringList letters;
    for (const auto &[code, meaning] : engine::lettersOfCodes(cmap.toStdString())) {
        letters << QString::fromLatin1(QByteArray::fromStdString(code).toHex() + '=' +
                                       QByteArray::fromStdString(meaning).toHex());
    }
    QTEST(letters, "letters");
}

void TestPieces::lettersEnd()
{
    const auto letters =
        engine::lettersOfCodes("beginbfrange <00000000> <ffffffff> <00000041> endbfrange");
    QCOMPARE(letters.size(), std::size_t(65536));
}

void TestPieces::mark_data()
{
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<QByteArray>("title");
    QTest::newRow("plain") << QByteArray("[ /Title (Accounts)\n /Author (Z) \n /DOCINFO pdfmark")
                           << QByteArray("Accounts");
    QTest::newRow("pairs") << QByteArray("[ /Title (a (b) c) /DOCINFO pdfmark")
                           << QByteArray("a (b) c");
    QTest::newRow("escapes") << QByteArray(
                                    "[ /Title (\\(\\\\\\051\\101\\n\\q\\\n.) /DOCINFO pdfmark")
                             << QByteArray("(\\)A\nq.");
    QTest::newRow("empty") << QByteArray("[ /Title () /DOCINFO pdfmark") << QByteArray("");
    QTest::newRow("no end") << QByteArray("[ /Title (a (b) /DOCINFO pdfmark") << QByteArray();
    QTest::newRow("a text with a key in it")
        << QByteArray("[ /Author (/Title (x)) /DOCINFO pdfmark") << QByteArray();
    QTest::newRow("no text") << QByteArray("[ /Title /x /DOCINFO pdfmark") << QByteArray();
    QTest::newRow("nothing") << QByteArray() << QByteArray();
    QTest::newRow("ends in an escape") << QByteArray("[ /Title (a\\") << QByteArray();
}

void TestPieces::mark()
{
    QFETCH(QByteArray, mark);
    QFETCH(QByteArray, title);
    const auto texts = engine::markTexts(mark.toStdString());
    const auto found = texts.find("/Title");
    QCOMPARE(found == texts.end(), title.isNull());
    if (found != texts.end())
        QCOMPARE(QByteArray::fromStdString(found->second), title);
}

void TestPieces::stall()
{
    using Time = engine::StallWatch::Time;
    engine::StallWatch watch(Time(10));
    QVERIFY(!watch.isStalled(Time(0), 0));
    QVERIFY(!watch.isStalled(Time(9.9), 0));
    QVERIFY(!watch.isStalled(Time(9.95), 1)); // growth
    QVERIFY(!watch.isStalled(Time(19.9), 1));
    QVERIFY(!watch.isStalled(Time(19.94), 0)); // a temporary file was removed
    QVERIFY(watch.isStalled(Time(29.95), 0));
}

void TestPieces::slowButSound()
{
    using Time = engine::StallWatch::Time;
    engine::StallWatch watch(engine::Limits().stall);
    for (int minute = 1; minute <= 24 * 60; ++minute)
        QVERIFY(!watch.isStalled(std::chrono::minutes(minute), std::uintmax_t(minute / 4)));
    QVERIFY(watch.isStalled(Time(25 * 3600), 360));
}

void TestPieces::outputFor()
{
    constexpr std::uintmax_t gibibyte = std::uintmax_t(1) << 30;
    const engine::Limits limits;
    QCOMPARE(limits.outputFor(0), 4 * gibibyte);
    QCOMPARE(limits.outputFor(gibibyte / 16), 4 * gibibyte);
    QCOMPARE(limits.outputFor(gibibyte), 50 * gibibyte);
}

void TestPieces::oneLine()
{
    QCOMPARE(engine::onOneLine("a\nb\r\tc\x1b[0m é"), std::string("a?b??c?[0m é"));
    QCOMPARE(std::string(engine::Failure("a\nb").what()), std::string("a?b"));
    QCOMPARE(engine::Failure("a").status(), 1);
    QCOMPARE(std::string(engine::Failure::ofSystem("a", ENOENT, 127).what()),
             std::string("a: No such file or directory"));
}

void TestPieces::configuredGhostscript()
{
    QCOMPARE(engine::findGhostscript("/opt/gs"), std::string("/opt/gs"));
}

void TestPieces::ghostscriptInPath()
{
    const QByteArray path = qgetenv("PATH");
    QTemporaryDir folder;
    QFile program(folder.filePath(u"gs"_s));
    QVERIFY(program.open(QIODevice::WriteOnly));
    QVERIFY(program.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    qputenv("PATH", "/nowhere::" + folder.path().toUtf8() + ":/bin");
    const std::string found = engine::findGhostscript({});
    qputenv("PATH", "/nowhere");
    const std::string none = engine::findGhostscript({});
    qputenv("PATH", path);
    QCOMPARE(found, program.fileName().toStdString());
    QCOMPARE(none, std::string());
}

void TestPieces::ghostscriptsFiles()
{
    const auto files = engine::systemFilesOf("/opt/gs-10/bin/gs", "/home/zoe");
    const auto has = [&](const char *path) {
        return std::find(files.begin(), files.end(), path) != files.end();
    };
    for (const char *path :
         {"/opt/gs-10/lib", "/opt/gs-10/share/ghostscript", "/usr/lib", "/usr/share/fonts",
          "/usr/share/color", "/usr/share/poppler", "/usr/local/share/fonts", "/etc/fonts",
          "/etc/ghostscript", "/var/lib/ghostscript", "/var/cache/fontconfig",
          "/home/zoe/.local/share/fonts", "/home/zoe/.fonts", "/home/zoe/.config/fontconfig"})
        QVERIFY2(has(path), path);
    for (const char *path :
         {"/", "/etc", "/usr", "/usr/bin", "/home", "/home/zoe", "/tmp", "/proc"})
        QVERIFY2(!has(path), path);
}

QTEST_GUILESS_MAIN(TestPieces)
#include "tst_engine_pieces.moc"
