// What the contents of a document are found to use, and where it is shown.
#include "parsed.h"
#include "samples.h"

#include "engine/content/contentwalk.h"

#include <QElapsedTimer>
#include <QTest>

#include <cmath>

using namespace parsed;

namespace {

// One line for each thing told: numbers are rounded to hundredths.
class Teller : public engine::ContentVisitor
{
public:
    void image(const engine::Shown &shown, QPDFObjectHandle image, const engine::Matrix &m) override
    {
        QStringList numbers;
        for (const double number : {m.a, m.b, m.c, m.d, m.e, m.f})
            numbers << QString::number(std::round(number * 100) / 100);
        tell("image " + QString::number(image.getObjectID()) + " [" + numbers.join(' ') + "]",
             shown);
    }
    void text(const engine::Shown &shown, QPDFObjectHandle font, const std::string &codes) override
    {
        tell("text " + QString::number(font.getObjectID()) + " " + QString::fromStdString(codes),
             shown);
    }
    void resource(QPDFObjectHandle resources, const std::string &category,
                  const std::string &name) override
    {
        QVERIFY(resources.getKey(category).hasKey(name));
        names << QString::fromStdString(category + name);
    }
    void unclear(const engine::Shown &shown, QPDFObjectHandle content) override
    {
        tell("unclear " + QString::number(content.getObjectID()), shown);
    }

    QStringList told;
    QStringList names;

private:
    void tell(const QString &line, const engine::Shown &shown)
    {
        told << line + " page " + QString::number(shown.page) + (shown.drawn ? "" : " undrawn") +
                    (shown.placed ? "" : " somewhere");
    }
};

Teller walked(const QByteArray &bytes)
{
    Document document(bytes);
    Teller teller;
    engine::walkContent(document, teller);
    return teller;
}

const QByteArray image = "<< /Type /XObject /Subtype /Image /Width 1 /Height 1 /ColorSpace"
                         " /DeviceGray /BitsPerComponent 8 /Length 1 >>\nstream\nx\nendstream";

// Object 4 is the content, 5 an image, which the resources know as /I; others follow from 6.
QByteArray page(const QByteArray &content, const QList<QByteArray> &objects = {},
                const QByteArray &resources = {}, const QByteArray &entries = {},
                const QByteArray &catalogue = {})
{
    return pdfOf(
        QList<QByteArray>{"<< /Type /Catalog /Pages 2 0 R " + catalogue + " >>",
                          "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
                          "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] " + entries +
                              " /Contents 4 0 R /Resources << " + resources +
                              (resources.contains("/XObject") ? "" : "/XObject << /I 5 0 R >>") +
                              " >> >>",
                          pdfStream({}, content), image} +
        objects);
}

QByteArray form(const QByteArray &content, const QByteArray &entries = {})
{
    return pdfStream("/Type /XObject /Subtype /Form /BBox [0 0 100 100] " + entries, content);
}

const QByteArray ownImage = "/Resources << /XObject << /I 5 0 R >> >>";

} // namespace

class TestContentWalk : public QObject
{
    Q_OBJECT

private slots:
    void told_data();
    void told();
    void names();
    void bounded_data();
    void bounded();
};

void TestContentWalk::told_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QStringList>("lines");
    const auto row = [](const char *name, const QByteArray &document, const QStringList &lines) {
        QTest::newRow(name) << document << lines;
    };
    const QString unit = "image 5 [1 0 0 1 0 0] page 0";
    row("plain", page("/I Do"), {unit});
    row("nothing", page("0 0 m"), {});
    row("unknown name", page("/J Do"), {});
    row("cm", page("2 0 0 3 4 5 cm 10 0 0 10 1 1 cm /I Do"), {"image 5 [20 0 0 30 6 8] page 0"});
    row("q Q", page("q 9 0 0 9 0 0 cm Q /I Do q 7 0 0 7 0 0 cm /I Do"),
        {unit, "image 5 [7 0 0 7 0 0] page 0"});
    row("Q without q", page("2 0 0 2 0 0 cm Q Q /I Do"), {"image 5 [2 0 0 2 0 0] page 0"});
    row("unit", page("/I Do", {}, {}, "/UserUnit 4"), {"image 5 [4 0 0 4 0 0] page 0"});
    row("outside", page("1 0 0 1 300 0 cm /I Do"), {"image 5 [1 0 0 1 300 0] page 0 undrawn"});
    row("left of the page", page("50 0 0 50 -60 9 cm /I Do"),
        {"image 5 [50 0 0 50 -60 9] page 0 undrawn"});
    row("below the page", page("50 0 0 50 9 -60 cm /I Do"),
        {"image 5 [50 0 0 50 9 -60] page 0 undrawn"});
    row("across the edge", page("50 0 0 50 -40 -40 cm /I Do"),
        {"image 5 [50 0 0 50 -40 -40] page 0"});
    row("outside the crop", page("/I Do", {}, {}, "/CropBox [50 50 200 200]"), {unit + " undrawn"});
    row("form",
        page("2 0 0 2 0 0 cm /F Do", {form("/I Do", "/Matrix [3 0 0 3 1 1] " + ownImage)},
             "/XObject << /F 6 0 R >>"),
        {"image 5 [6 0 0 6 2 2] page 0"});
    row("form without resources",
        page("/F Do", {form("/I Do")}, "/XObject << /F 6 0 R /I 5 0 R >>"), {unit});
    row("form in itself",
        page("/F Do", {form("/I Do /F Do", "/Matrix [2 0 0 2 0 0]")},
             "/XObject << /F 6 0 R /I 5 0 R >>"),
        {"image 5 [2 0 0 2 0 0] page 0"});
    row("form at two places",
        page("/F Do 5 0 0 5 0 0 cm /F Do /F Do", {form("/I Do", ownImage)},
             "/XObject << /F 6 0 R >>"),
        {unit, "image 5 [5 0 0 5 0 0] page 0"});
    row("pattern",
        page("5 0 0 5 0 0 cm /Pattern cs /P scn",
             {pdfStream("/PatternType 1 /Matrix [3 0 0 3 7 7] " + ownImage, "/I Do")},
             "/Pattern << /P 6 0 R >>"),
        {"image 5 [3 0 0 3 7 7] page 0 somewhere"});
    row("pattern in a form",
        page("5 0 0 5 0 0 cm /F Do",
             {form("8 0 0 8 0 0 cm 1 0 0 /P SCN",
                   "/Matrix [2 0 0 2 0 0] /Resources << /Pattern << /P 7 0 R >> >>"),
              pdfStream("/PatternType 1 /Matrix [3 0 0 3 0 0] " + ownImage, "/I Do")},
             "/XObject << /F 6 0 R >>"),
        {"image 5 [30 0 0 30 0 0] page 0 somewhere"});
    row("soft mask",
        page("5 0 0 5 0 0 cm /G gs", {form("/I Do", ownImage)},
             "/ExtGState << /G << /SMask << /S /Luminosity /G 6 0 R >> >> >>"),
        {"image 5 [5 0 0 5 0 0] page 0"});
    const QByteArray glyphs = "<< /Type /Font /Subtype /Type3 /FontMatrix [.01 0 0 .01 0 0]"
                              " /CharProcs << /a 7 0 R >> " +
                              ownImage + " >>";
    row("glyph",
        page("2 0 0 2 0 0 cm BT /T 10 Tf 50 Tz 3 0 0 4 9 9 Tm (x) Tj (y) Tj ET",
             {glyphs, pdfStream({}, "100 0 0 100 0 0 cm /I Do")}, "/Font << /T 6 0 R >>"),
        {"text 6 x page 0", "image 5 [30 0 0 80 0 0] page 0 somewhere", "text 6 y page 0"});
    row("texts",
        page("BT /T 1 Tf (a\\)\\141) Tj [(b) -3 <63>] TJ (d) ' 1 2 (e) \" ET",
             {"<< /Type /Font >>"}, "/Font << /T 6 0 R >>"),
        {"text 6 a)a page 0", "text 6 bc page 0", "text 6 d page 0", "text 6 e page 0"});
    row("font of a graphics state",
        page("/G gs (a) Tj q /U 1 Tf (b) Tj Q (c) Tj", {"<< /Type /Font >>"},
             "/ExtGState << /G << /Font [6 0 R 9] >> >>"),
        {"text 6 a page 0", "text 0 b page 0", "text 6 c page 0"});
    row("font for a form",
        page("/T 1 Tf /F Do", {"<< /Type /Font >>", form("(a) Tj", "/Resources << >>")},
             "/Font << /T 6 0 R >> /XObject << /F 7 0 R >>"),
        {"text 6 a page 0"});
    row("inline image", page("BI /W 4 /H 1 /BPC 8 /CS /G ID \nEI  EI /I Do"), {unit});
    row("inline image, RGB", page("BI /W 4 /H 1 /BPC 8 /CS /RGB ID 1234567 EI ( EI /I Do"), {unit});
    row("inline image, DeviceRGB",
        page("BI /Width 4 /Height 1 /BitsPerComponent 8 /ColorSpace /DeviceRGB ID 1234567 EI ( EI"
             " /I Do"),
        {unit});
    row("inline image, CMYK", page("BI /W 3 /H 1 /BPC 8 /CS /CMYK ID 1234567 EI ( EI /I Do"),
        {unit});
    row("inline image of unknown size", page("BI /W 4 /H 1 /F /Fl ID \x01(\x02 EI\n/I Do"), {unit});
    row("inline image without end", page("/I Do BI /W 4 /H 1 /F /Fl ID abc"),
        {unit, "unclear 3 page 0"});
    row("dictionary", page("/Artifact << /A (]) /B [ true /C Do ] >> BDC /I Do EMC"), {unit});
    row("comment", page("% ( /I Do\n/I Do"), {unit});
    row("open string", page("/I Do (abc"), {unit, "unclear 3 page 0"});
    row("open array", page("/I Do [ 1 /I Do"), {unit, "unclear 3 page 0"});
    row("no content", page("/I Do \x80\x81 /I Do"), {unit, "unclear 3 page 0"});
    row("no object", page("1 0 0 1e999 0 0 cm /F Do", {form("/I Do")}), {});
    row("damaged form",
        page("/F Do /I Do", {form("no zlib", "/Filter /FlateDecode")},
             "/XObject << /F 6 0 R /I 5 0 R >>"),
        {"unclear 6 page 0", unit});

    const QByteArray layers = "/OCProperties << /OCGs [6 0 R 7 0 R] /D << /OFF [6 0 R] >> >>";
    const QByteArray noLayers =
        "/OCProperties << /OCGs [6 0 R 7 0 R] /D << /BaseState /OFF /ON [7 0 R] >> >>";
    const QList<QByteArray> groups = {
        "<< /Type /OCG /Name (off) >>",
        "<< /Type /OCG /Name (on) >>",
        "<< /Type /OCMD /OCGs [6 0 R 7 0 R] >>",
        "<< /Type /OCMD /OCGs [6 0 R 7 0 R] /P /AllOn >>",
        "<< /Type /OCMD /OCGs [6 0 R 7 0 R] /P /AnyOff >>",
        "<< /Type /OCMD /OCGs [6 0 R 7 0 R] /P /AllOff >>",
        "<< /Type /OCMD /VE [/Not 7 0 R] >>",
        "<< /Type /OCMD /VE [/Or 6 0 R [/And 7 0 R 7 0 R]] >>",
    };
    const bool shows[] = {false, true, true, false, true, false, false, true};
    for (int number = 6; number < 14; ++number) {
        const QByteArray properties = "/Properties << /L " + QByteArray::number(number) + " 0 R >>";
        const QString drawn = shows[number - 6] ? "" : " undrawn";
        for (const QByteArray &which : {layers, noLayers})
            row((which.left(60) + groups[number - 6]).constData(),
                page("/OC /L BDC /A BMC /I Do EMC EMC 2 0 0 2 0 0 cm /I Do", groups, properties, {},
                     which),
                {unit + drawn, "image 5 [2 0 0 2 0 0] page 0"});
    }
    row("form of a layer",
        page("/F Do /I Do", groups + QList<QByteArray>{form("/I Do", ownImage + " /OC 6 0 R")},
             "/XObject << /F 14 0 R /I 5 0 R >>", {}, layers),
        {unit + " undrawn", unit});

    const auto annotated = [&](const QByteArray &annotation, const QByteArray &catalogue = {}) {
        return page({},
                    {annotation, form("/I Do", "/Matrix [2 0 0 2 0 0] " + ownImage),
                     form("9 0 0 9 0 0 cm /I Do", ownImage)},
                    {}, "/Annots [6 0 R]", catalogue);
    };
    const QByteArray stamp = "<< /Subtype /Stamp /Rect [10 20 60 120] ";
    const QString fitted = "image 5 [0.5 0 0 1 10 20] page 0";
    row("appearance", annotated(stamp + "/AP << /N 7 0 R >> >>"), {fitted});
    row("hidden", annotated(stamp + "/F 2 /AP << /N 7 0 R >> >>"), {fitted + " undrawn"});
    row("not viewed", annotated(stamp + "/F 32 /AP << /N 7 0 R >> >>"), {fitted + " undrawn"});
    row("printed", annotated(stamp + "/F 4 /AP << /N 7 0 R >> >>"), {fitted});
    row("states", annotated(stamp + "/AS /On /AP << /N << /On 7 0 R /Off 8 0 R >> /D 8 0 R >> >>"),
        {
            "image 5 [4.5 0 0 9 10 20] page 0 undrawn",
            fitted,
        });
    row("no rectangle", annotated("<< /Subtype /Stamp /AP << /N 7 0 R >> >>"),
        {"image 5 [1 0 0 1 0 0] page -1 undrawn"});
    row("field of no page",
        page({}, {"<< /Kids [7 0 R 6 0 R] >>", "<< /AP << /N 8 0 R >> >>", form("/I Do", ownImage)},
             {}, {}, "/AcroForm << /Fields [6 0 R] >>"),
        {"image 5 [1 0 0 1 0 0] page -1 undrawn"});
}

void TestContentWalk::told()
{
    QFETCH(QByteArray, document);
    QFETCH(QStringList, lines);
    QCOMPARE(walked(document).told, lines);
}

void TestContentWalk::names()
{
    const Teller teller =
        walked(page("/I Do /F Do /G gs /G gs /S cs /T CS /P scn /H sh /Q MP /A /M DP /E /N BDC EMC"
                    " BI /CS /U /W 1 /H 1 ID x EI /A#42 1 Tf /Missing Do",
                    {form("/I Do", "/Resources << /XObject << /I 5 0 R >> >>"), "<< >>"},
                    "/XObject << /I 5 0 R /F 6 0 R /J 5 0 R >> /ExtGState << /G 7 0 R >>"
                    " /ColorSpace << /S 7 0 R /T 7 0 R /U 7 0 R /V 7 0 R >> /Pattern << /P 7 0 R >>"
                    " /Shading << /H 7 0 R >> /Properties << /M 7 0 R /N 7 0 R /A 7 0 R >>"
                    " /Font << /AB 7 0 R >>"));
    QCOMPARE(teller.names,
             QStringList({"/XObject/I", "/XObject/F", "/XObject/I", "/ExtGState/G", "/ColorSpace/S",
                          "/ColorSpace/T", "/Pattern/P", "/Shading/H", "/Properties/M",
                          "/Properties/N", "/ColorSpace/U", "/Font/AB"}));
}

void TestContentWalk::bounded_data()
{
    QTest::addColumn<QByteArray>("content"); // of form number %1, which shows the next one as /F
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("complete");
    const auto row = [](const char *name, const QByteArray &content, int depth, bool complete) {
        QTest::newRow(name) << content << depth << complete;
    };
    row("deep", "/F Do", 400, false);
    row("the same again", "/F Do /F Do /F Do /F Do", 30, true);
    row("others each time", "q /F Do Q 1 0 0 1 1 0 cm /F Do 2 0 0 1 0 0 cm /F Do", 30, false);
}

// None takes the time that its contents ask for, and what was left out is told.
void TestContentWalk::bounded()
{
    QFETCH(QByteArray, content);
    QFETCH(int, depth);
    QFETCH(bool, complete);
    QList<QByteArray> forms;
    for (int number = 6; number < 6 + depth; ++number)
        forms << form(content, "/Resources << /XObject << /F " + QByteArray::number(number + 1) +
                                   " 0 R >> >>");
    forms << form("/I Do", ownImage);
    const Teller teller = walked(page("/F Do /I Do", forms, "/XObject << /F 6 0 R /I 5 0 R >>"));
    const auto unclear = teller.told.filter("unclear");
    QCOMPARE(unclear.isEmpty(), complete);
    QVERIFY(teller.told.size() < 3'000'000);
}

QTEST_GUILESS_MAIN(TestContentWalk)
#include "tst_contentwalk.moc"
