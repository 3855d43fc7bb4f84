// What the independent reader sees of a copy's faults.
#include "bench.h"
#include "catchsignals.h"
#include "documents.h"
#include "parsed.h"
#include "readings.h"
#include "samples.h"

#include "engine/content/contentwalk.h"
#include "engine/pdf/pageboxes.h"
#include "engine/stages/proof.h"
#include "engine/system/programs.h"

#include <QTemporaryDir>
#include <QTest>

using namespace engine;

namespace {

Descriptor scratchFile()
{
    const File file;
    return Descriptor(dup(file));
}

std::vector<PageView> viewsIn(const QByteArray &document)
{
    parsed::Document parsed(document);
    return pageViewsOf(parsed);
}

class Images : public ContentVisitor
{
public:
    void image(const Shown &shown, QPDFObjectHandle image, const Matrix &matrix) override
    {
        const Box box = boundsOf({0, 0, 1, 1}, matrix);
        parts.push_back({PartKind::Image, image.getObjectID(), shown.page, box.left, box.bottom,
                         box.right, box.top});
    }
    std::vector<TouchedPart> parts;
};

std::vector<TouchedPart> imagesIn(const QByteArray &document)
{
    parsed::Document parsed(document);
    Images images;
    walkContent(parsed, images);
    return images.parts;
}

TouchedPart font(int object, int page = 0)
{
    return {PartKind::Font, object, page, 0, 0, 200, 200};
}

// Where nothing differs.
const TouchedPart smallImage = {PartKind::Image, 90, 0, 180, 10, 190, 20};

ProofSettings settings()
{
    ProofSettings settings;
    settings.readers = {findProgram("", "pdftotext"), findProgram("", "pdftoppm")};
    settings.processes = 2;
    return settings;
}

ProofResult prove(const QByteArray &copy, const QByteArray &original,
                  const std::vector<TouchedPart> &parts, const ProofSettings &with = settings(),
                  std::vector<PageView> views = {}, Likeness likeness = Likeness::Same)
{
    if (views.empty())
        views = viewsIn(original);
    std::set<int> pages;
    for (const PageView &view : views)
        pages.insert(view.page);
    const File copyFile(copy);
    const File originalFile(original);
    Children children{Limits()};
    Proof proof(children, with, originalFile, scratchFile);
    proof.begin(views, pages);
    return proof.compare(copyFile, parts, likeness);
}

QList<int> failed(const ProofResult &result)
{
    return {result.findings.failed.begin(), result.findings.failed.end()};
}

QByteArray grayImage(const QByteArray &samples, int width = 100, const QByteArray &entries = {})
{
    return pdfStream("/Type /XObject /Subtype /Image /ColorSpace /DeviceGray /BitsPerComponent 8"
                     " /Width " +
                         QByteArray::number(width) + " /Height " +
                         QByteArray::number(samples.size() / width) + ' ' + entries,
                     samples);
}

// Slopes that lie on their side where they are turned.
QByteArray slope(int lighter = 0)
{
    QByteArray samples;
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 100; ++x)
            samples += char(40 + x + y / 2 + lighter);
    }
    return samples;
}

QByteArray withImages(const QByteArray &first, const QByteArray &second,
                      const QByteArray &page = {})
{
    documents::Parts parts;
    parts.content = "q 60 0 0 40 30 90 cm /A Do Q q 50 0 0 50 120 30 cm /B Do Q";
    parts.resources = "/XObject << /A 6 0 R /B 7 0 R >>";
    parts.page = page;
    parts.objects = {first, second};
    return documents::withParts(parts);
}

QByteArray negative(QByteArray samples)
{
    for (char &sample : samples)
        sample = char(~sample);
    return samples;
}

// Seven pages with a word each.
QByteArray pages(const QByteArray &fourth)
{
    QByteArray kids;
    QList<QByteArray> objects;
    for (int page = 0; page < 7; ++page) {
        const QByteArray content = QByteArray::number(5 + 2 * page);
        kids += QByteArray::number(4 + 2 * page) + " 0 R ";
        objects += "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Resources << /Font << /F"
                   " 3 0 R >> >> /Contents " +
                   content + " 0 R >>";
        objects += pdfStream({}, page == 3 ? fourth : "BT /F 12 Tf 20 20 Td (Page) Tj ET");
    }
    return pdfOf(QList<QByteArray>{"<< /Type /Catalog /Pages 2 0 R >>",
                                   "<< /Type /Pages /Count 7 /Kids [" + kids + "] >>",
                                   "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"} +
                 objects);
}

} // namespace

class TestProof : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void same();
    void mutants_data();
    void mutants();
    void mutantsOfRewriting_data();
    void mutantsOfRewriting();
    void soundRewriting_data();
    void soundRewriting();
    void wrongImage_data();
    void wrongImage();
    void placeOnPage_data();
    void placeOnPage();
    void fewerPages();
    void anotherDraft();
    void unexpectedPages();
    void partOnNoPage();
    void nothingTouched();
    void encryptedOriginal();
    void brokenDraft();
    void noReader_data();
    void noReader();
    void badReader_data();
    void badReader();
    void otherPageCount();
};

void TestProof::initTestCase()
{
    catchSignals();
}

void TestProof::same()
{
    const QByteArray original = withImages(grayImage(slope()), grayImage(slope()));
    QVERIFY(prove(original, original, {font(5), smallImage}).isSound());
    const QByteArray rewritten =
        documents::rewritten(original, {"--object-streams=generate", "--linearize"});
    QVERIFY(rewritten != original);
    QVERIFY(prove(rewritten, original, {font(5), smallImage}).isSound());
}

// What is lost or changed, outside of images.
void TestProof::mutants_data()
{
    QTest::addColumn<QByteArray>("meant");
    QTest::addColumn<QByteArray>("copied");
    const auto text = [](const QByteArray &string) {
        return "BT /F 10 Tf 20 100 Td (" + string + ") Tj ET";
    };
    const QByteArray none;
    QTest::newRow("comma") << text("One, two") << text("One two");
    QTest::newRow("letter") << text("One two") << text("One tvo");
    QTest::newRow("capital") << text("One") << text("one");
    QTest::newRow("invisible text") << "3 Tr " + text("One") << "3 Tr " + text("Ono");
    QTest::newRow("letter's place") << text("One two") << text("One tw) Tj 0.5 0 Td (o");
    QTest::newRow("drawn comma") << QByteArray("40 40 m 41.5 40 l 40.3 37.6 l f") << none;
    QTest::newRow("small image")
        << QByteArray("q 3 0 0 3 60 60 cm BI /W 1 /H 1 /BPC 8 /CS /G ID \x30 EI Q") << none;
    QTest::newRow("thin line") << QByteArray("0.1 w 20 80 m 120 80 l S") << none;
    QTest::newRow("thinnest line") << QByteArray("0 w 20 80 m 120 81 l S") << none;
    QTest::newRow("thin rectangle") << QByteArray("20 80 100 0.2 re f") << none;
    QTest::newRow("colour") << QByteArray("0.5 g 20 20 30 30 re f")
                            << QByteArray("0.49 g 20 20 30 30 re f");
}

// At the lowest resolution as well.
void TestProof::mutants()
{
    QFETCH(QByteArray, meant);
    QFETCH(QByteArray, copied);
    const QByteArray original = documents::withParts({.content = meant});
    const QByteArray copy = documents::withParts({.content = copied});
    for (const double resolution : {comparisonResolution(150), comparisonResolution(1)}) {
        ProofSettings drawn = settings();
        drawn.resolution = resolution;
        QCOMPARE(failed(prove(copy, original, {font(5), smallImage}, drawn)), QList<int>{5});
        QCOMPARE(failed(prove(copy, original, {smallImage}, drawn)), QList<int>{90});
        QVERIFY(prove(original, original, {font(5), smallImage}, drawn).isSound());
    }
}

// What is lost or changed where everything may be drawn a little otherwise.
void TestProof::mutantsOfRewriting_data()
{
    QTest::addColumn<QByteArray>("meant");
    QTest::addColumn<QByteArray>("copied");
    QTest::addColumn<bool>("withOtherFonts"); // it is seen where fonts are others, too
    const auto text = [](const QByteArray &state, const QByteArray &string = "The parish holds") {
        return "BT " + state + " 20 100 Td (" + string + ") Tj ET";
    };
    const QByteArray none;
    QTest::newRow("line of text") << text("/F 10 Tf") << none << true;
    QTest::newRow("line of invisible text") << text("/F 10 Tf 3 Tr") << none << true;
    QTest::newRow("other letters")
        << text("/F 10 Tf 3 Tr") << text("/F 10 Tf 3 Tr", "Tke marsh") << true;
    QTest::newRow("one letter of a few")
        << text("/F 10 Tf") << text("/F 10 Tf", "The marish holds") << true;
    const QByteArray stillThere = text("/F 10 Tf 3 Tr");
    QTest::newRow("line of drawn text") << text("/F 10 Tf") << stillThere << true;
    QTest::newRow("small print") << text("/F 8 Tf") << stillThere << false;
    QTest::newRow("gray print") << text("0.4 g /F 10 Tf") << stillThere << false;
    QTest::newRow("a line lower") << text("/F 10 Tf")
                                  << "q 1 0 0 1 0 -8 cm " + text("/F 10 Tf") + " Q" << true;
    QTest::newRow("small image")
        << QByteArray("q 3 0 0 3 60 60 cm BI /W 1 /H 1 /BPC 8 /CS /G ID \x30 EI Q") << none
        << false;
    QTest::newRow("image") << QByteArray(
                                  "q 24 0 0 24 60 60 cm BI /W 1 /H 1 /BPC 8 /CS /G ID \x80 EI Q")
                           << none << true;
    QTest::newRow("pale image")
        << QByteArray("q 80 0 0 80 60 40 cm BI /W 1 /H 1 /BPC 8 /CS /G ID \xe0 EI Q") << none
        << true;
    QTest::newRow("thin line") << QByteArray("0.1 w 20 80 m 120 80 l S") << none << true;
    QTest::newRow("thinnest line") << QByteArray("0 w 20 81 m 120 81 l S") << none << true;
    QTest::newRow("upright line") << QByteArray("0.25 w 80 20 m 80 120 l S") << none << true;
    QTest::newRow("slanting line") << QByteArray("1 w 20 80 m 120 120 l S") << none << false;
    QTest::newRow("drawing") << QByteArray("40 40 m 60 80 l 80 40 l f") << none << true;
    QTest::newRow("colour") << QByteArray("1 0 0 rg 20 20 30 30 re f")
                            << QByteArray("0 0 1 rg 20 20 30 30 re f") << true;
}

void TestProof::mutantsOfRewriting()
{
    QFETCH(QByteArray, meant);
    QFETCH(QByteArray, copied);
    QFETCH(bool, withOtherFonts);
    const QByteArray original = documents::withParts({.content = meant});
    const QByteArray copy = documents::withParts({.content = copied});
    const auto found = [&](Likeness likeness) {
        return failed(prove(copy, original, {font(5)}, settings(), {}, likeness));
    };
    QCOMPARE(found(Likeness::Rewritten), QList<int>{5});
    if (withOtherFonts)
        QCOMPARE(found(Likeness::RewrittenOtherFonts), QList<int>{5});
}

void TestProof::soundRewriting_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("text") << QByteArray("BT /F 10 Tf 20 100 Td (The parish) Tj 3.3 0 Td"
                                        " /F 6 Tf 20 90 Td (holds some pages) Tj ET");
    QTest::newRow("lines") << QByteArray("0 w 20 80 m 120 80 l S 0.5 w 20 60.3 m 120 90 l S");
    QTest::newRow("colours") << QByteArray("1 0 0 0 k 20 20 40 40 re f 0 1 0 0 k 60 20 40 40 re f"
                                           " 0 0 1 0 k 100 20 40 40 re f 1 1 0 0 k 20 60 40 40 re f"
                                           " 0 1 1 0 k 60 60 40 40 re f 1 0 1 0 k 100 60 40 40 re f"
                                           " 0 0 0 1 k 140 60 40 40 re f");
    QTest::newRow("image") << QByteArray(
        "q 30 0 0 30 60 60 cm BI /W 2 /H 2 /BPC 8 /CS /G ID \x20\x80\xc0\xf0 EI Q");
}

// Ghostscript's own.
void TestProof::soundRewriting()
{
    QFETCH(QByteArray, content);
    const QByteArray original = documents::withParts({.content = content});
    const Bench bench(original);
    tools::outputOf(Bench::ghostscript(),
                    {"-q", "-dBATCH", "-dNOPAUSE", "-sDEVICE=pdfwrite",
                     "-sColorConversionStrategy=RGB", "-sOutputFile=" + bench.out("a.pdf"),
                     bench.in("a.pdf")});
    const QByteArray copy = contentOf(bench.out("a.pdf"));
    QVERIFY(!copy.isEmpty());
    QVERIFY(prove(copy, original, {font(5)}, settings(), {}, Likeness::Rewritten).isSound());
}

void TestProof::wrongImage_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<bool>("isSound");
    QTest::newRow("the same") << grayImage(slope()) << true;
    QTest::newRow("a little lighter") << grayImage(slope(5)) << true;
    QTest::newRow("negative") << grayImage(negative(slope())) << false;
    QTest::newRow("inverted") << grayImage(slope(), 100, "/Decode [1 0]") << false;
    QTest::newRow("blank") << grayImage(QByteArray(10'000, '\xff')) << false;
    QTest::newRow("lighter") << grayImage(slope(20)) << false;
    QTest::newRow("one pixel") << grayImage("\x80", 1) << false;
    QTest::newRow("masked away") << grayImage(slope(), 100, "/Mask [0 255]") << false;
    QTest::newRow("no image") << pdfStream("/Type /XObject /Subtype /Image", "") << false;
}

// The other one is let alone.
void TestProof::wrongImage()
{
    QFETCH(QByteArray, image);
    QFETCH(bool, isSound);
    const QByteArray original = withImages(grayImage(slope()), grayImage(slope()));
    const QByteArray copy = withImages(grayImage(slope()), image);
    const auto result = prove(copy, original, imagesIn(original));
    QVERIFY(result.readable);
    QVERIFY(!result.findings.unexplained);
    QCOMPARE(failed(result), isSound ? QList<int>() : QList<int>{7});
}

void TestProof::placeOnPage_data()
{
    QTest::addColumn<QByteArray>("page");
    for (const char *rotation : {"0", "90", "180", "270", "-90", "450"}) {
        for (const char *box : {"", "/CropBox [20 25 180 190]", "/CropBox [50 50 150 110]",
                                "/CropBox [-40 60 300 120]", "/UserUnit 2.5",
                                "/UserUnit 0.3 /CropBox [20 25 180 190]"}) {
            const QByteArray page = "/Rotate " + QByteArray(rotation) + ' ' + box;
            QTest::newRow(page.constData()) << page;
        }
    }
}

// An image that is a little lighter is so within its place, and in no smaller one.
void TestProof::placeOnPage()
{
    QFETCH(QByteArray, page);
    const QByteArray original = withImages(grayImage(slope()), grayImage(slope()), page);
    const QByteArray copy = withImages(grayImage(slope(5)), grayImage(slope()), page);
    std::vector<TouchedPart> parts = imagesIn(original);
    QCOMPARE(parts.front().object, 6);
    QVERIFY(prove(copy, original, parts).isSound());
    parts.front().right = (parts.front().left + parts.front().right) / 2;
    parts.back().left = parts.back().right;
    QVERIFY(!prove(copy, original, parts).isSound());
}

void TestProof::fewerPages()
{
    const QByteArray original = pages("BT /F 12 Tf 20 20 Td (Page) Tj ET");
    const QByteArray copy = pages("BT /F 12 Tf 20 21 Td (Page) Tj ET");
    QCOMPARE(failed(prove(copy, original, {font(10, 0), font(13, 3), font(16, 6)})),
             QList<int>{13});
    QCOMPARE(failed(prove(copy, original, {font(12, 2), font(13, 3), font(14, 4)})),
             QList<int>{13});
    QVERIFY(prove(copy, original, {font(10, 0), font(16, 6)}).isSound());
}

void TestProof::anotherDraft()
{
    const QByteArray original = pages("BT /F 12 Tf 20 20 Td (Page) Tj ET");
    const File originalFile(original);
    const File wrong(pages("BT /F 12 Tf 20 20 Td (Sage) Tj ET"));
    const File right(documents::rewritten(original, {"--object-streams=generate"}));
    Children children{Limits()};
    Proof proof(children, settings(), originalFile, scratchFile);
    proof.begin(viewsIn(original), {1, 2, 3, 4});
    QCOMPARE(failed(proof.compare(wrong, {font(12, 2), font(13, 3)})), QList<int>{13});
    QVERIFY(proof.compare(right, {font(12, 2)}).isSound());
    QCOMPARE(failed(proof.compare(wrong, {font(12, 2), font(13, 3)})), QList<int>{13});
}

// A page of which begin() knew nothing is drawn all the same.
void TestProof::unexpectedPages()
{
    const QByteArray original = pages("40 40 50 50 re f");
    const File originalFile(original);
    const File wrong(pages("40 40 50 49 re f"));
    const auto parts = {font(12, 2), font(13, 3), font(14, 5)};
    for (const auto &expected : QList<std::set<int>>{{}, {1, 2}, {5, 6}}) {
        Children children{Limits()};
        Proof proof(children, settings(), originalFile, scratchFile);
        proof.begin(viewsIn(original), expected);
        QCOMPARE(failed(proof.compare(wrong, parts)), QList<int>{13});
        QVERIFY(proof.compare(originalFile, parts).isSound());
        QCOMPARE(failed(proof.compare(wrong, parts)), QList<int>{13});
    }
}

void TestProof::partOnNoPage()
{
    const QByteArray original = pages("BT /F 12 Tf 20 20 Td (Page) Tj ET");
    QCOMPARE(failed(prove(original, original, {font(12, 2), font(13, -1), font(14, 70)})),
             (QList<int>{13, 14}));
}

// The text is compared all the same.
void TestProof::nothingTouched()
{
    const QByteArray original = pages("BT /F 12 Tf 20 20 Td (Page) Tj ET");
    QVERIFY(prove(original, original, {}).isSound());
    QVERIFY(prove(pages("BT /F 12 Tf 20 20 Td (Sage) Tj ET"), original, {}).findings.unexplained);
}

void TestProof::encryptedOriginal()
{
    const QByteArray document = withImages(grayImage(slope()), grayImage(slope()));
    const QByteArray original =
        documents::rewritten(document, {"--encrypt", "", "owner", "256", "--extract=n", "--"});
    QVERIFY(original.contains("/Encrypt"));
    QVERIFY(prove(document, original, {font(5)}).isSound());
}

void TestProof::brokenDraft()
{
    const QByteArray original = withImages(grayImage(slope()), grayImage(slope()));
    for (const QByteArray &copy : {QByteArray(), QByteArray("rubbish"), original.left(40)}) {
        const auto result = prove(copy, original, {font(5), smallImage});
        QVERIFY(result.readable);
        QCOMPARE(failed(result), (QList<int>{5, 90}));
        QVERIFY(!prove(copy, original, {}).isSound());
    }
}

void TestProof::noReader_data()
{
    QTest::addColumn<QString>("texts");
    QTest::addColumn<QString>("pictures");
    const auto texts = QString::fromStdString(settings().readers.texts);
    const auto pictures = QString::fromStdString(settings().readers.pictures);
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("no texts") << QString() << pictures;
    QTest::newRow("no pictures") << texts << QString();
    QTest::newRow("gone") << texts << QStringLiteral("/nowhere/pdftoppm");
}

void TestProof::noReader()
{
    QFETCH(QString, texts);
    QFETCH(QString, pictures);
    ProofSettings without = settings();
    without.readers = {texts.toStdString(), pictures.toStdString()};
    const QByteArray original = documents::withParts({});
    QVERIFY(!prove(original, original, {font(5)}, without).readable);
}

void TestProof::badReader_data()
{
    QTest::addColumn<QByteArray>("behaviour");
    for (const char *behaviour : {"crash", "loop", "flood", "arguments", "descriptors"})
        QTest::newRow(behaviour) << QByteArray(behaviour);
}

// Crashes, burns its time, never stops writing, or writes something else.
void TestProof::badReader()
{
    QFETCH(QByteArray, behaviour);
    qputenv("STANDIN", behaviour);
    const QByteArray original = documents::withParts({});
    ProofSettings bad = settings();
    bad.limits.time = std::chrono::seconds(1);
    bad.limits.text = 1 << 20;
    bad.readers.texts = Bench::standin().toStdString();
    QVERIFY(!prove(original, original, {font(5)}, bad).readable);
    std::swap(bad.readers.texts, bad.readers.pictures);
    bad.readers.texts = settings().readers.texts;
    bad.readers.pictures = Bench::standin().toStdString();
    QVERIFY(!prove(original, original, {font(5)}, bad).isSound());
    qunsetenv("STANDIN");
}

void TestProof::otherPageCount()
{
    const QByteArray original = documents::withParts({});
    std::vector<PageView> views = viewsIn(original);
    views.push_back(views.front());
    views.back().page = 1;
    QVERIFY(!prove(original, original, {font(5)}, settings(), views).readable);
}

QTEST_GUILESS_MAIN(TestProof)
#include "tst_proof.moc"
