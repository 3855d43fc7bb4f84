// Names that nothing shows go, and only those.
#include "documents.h"
#include "parsed.h"
#include "samples.h"

#include "engine/lossless/unusednames.h"

#include <QTest>

using Object = QPDFObjectHandle;

class TestUnusedNames : public QObject
{
    Q_OBJECT

private slots:
    void unused();
    void kept_data();
    void kept();
    void inherited();
    void shared();
};

namespace {

QByteArray form(const QByteArray &content, const QByteArray &entries = {})
{
    return pdfStream("/Type /XObject /Subtype /Form /BBox [0 0 9 9] " + entries, content);
}

// A page that shows this, whose resources know the sixth object by the name.
struct Place
{
    const char *name = "a name";
    QByteArray resources = "/XObject << /N 6 0 R >>";
    QByteArray content = "";
    QByteArray page = "";
    QByteArray catalogue = "";
    QList<QByteArray> objects = {form("f")};
};

QByteArray documentOf(const Place &place)
{
    documents::Parts parts;
    parts.resources = place.resources;
    parts.content = place.content;
    parts.page = place.page;
    parts.catalogue = place.catalogue;
    parts.objects = place.objects;
    return documents::withParts(parts);
}

Object resourcesOf(QPDF &document, int page = 0)
{
    return Object(document.getAllPages().at(std::size_t(page))).getKey("/Resources");
}

bool hasName(Object resources)
{
    for (const auto &[category, names] : resources.getDictAsMap()) {
        if (Object(names).isDictionary() && Object(names).hasKey("/N"))
            return true;
    }
    return false;
}

} // namespace

void TestUnusedNames::unused()
{
    for (const char *category : {"/XObject", "/ColorSpace", "/ExtGState", "/Pattern", "/Shading"}) {
        parsed::Document document(documentOf({.resources = category + QByteArray("<< /N 6 0 R >>"),
                                              .content = "/M gs /M Do (/N Do) Tj % /N Do"}));
        QVERIFY(hasName(resourcesOf(document)));
        engine::dropUnusedNames(document, {});
        QVERIFY2(!hasName(resourcesOf(document)), category);
        QVERIFY(resourcesOf(document).getKey("/Font").hasKey("/F"));
    }
}

void TestUnusedNames::kept_data()
{
    const QByteArray annotation = "/Annots [<< /Type /Annot /Subtype /Stamp /Rect [0 0 9 9] /AP "
                                  "<< /N 7 0 R >> >>]";
    QTest::addColumn<QByteArray>("bytes");
    const QList<Place> places = {
        {.name = "shown", .content = "/N Do"},
        {.name = "shown behind a blank line", .content = "\r\n/N\r\n\r\nDo"},
        {.name = "shown by a name that is written otherwise", .content = "/#4e Do"},
        {.name = "shown by a form without resources",
         .resources = "/XObject << /N 6 0 R /X 7 0 R >>",
         .content = "/X Do",
         .objects = {form("f"), form("/N Do")}},
        {.name = "shown by an appearance without resources",
         .page = annotation,
         .objects = {form("f"), form("/N Do")}},
        {.name = "shown by an appearance that has these resources",
         .page = QByteArray(annotation).replace("/N 7 0 R", "/D << /On 7 0 R >>"),
         .objects = {form("f"), form("/N Do", "/Resources << /XObject << /N 6 0 R >> >>")}},
        {.name = "of a default colour space",
         .resources = "/ColorSpace << /DefaultRGB [/ICCBased 6 0 R] /N /DeviceGray >>",
         .content = "/N cs"},
        {.name = "of a colour space of an image in the content",
         .resources = "/ColorSpace << /N [/Indexed /DeviceRGB 1 <000000ffffff>] >>",
         .content = "BI /W 1 /H 1 /BPC 1 /CS /N ID \x80 EI"},
        {.name = "of a layer",
         .resources = "/Properties << /N 6 0 R >>",
         .objects = {"<< /Type /OCG /Name (layer) >>"}},
        {.name = "of a content that is damaged",
         .page = "/Contents [4 0 R 7 0 R]",
         .objects = {form("f"), pdfStream("/Filter /FlateDecode", "no")}},
        {.name = "of resources that are a template's as well",
         .resources = "/XObject 7 0 R",
         .catalogue = "/Own << /Resources << /XObject 7 0 R >> >>",
         .objects = {form("f"), "<< /N 6 0 R >>"}},
        {.name = "of a field's default resources",
         .resources = "/XObject 7 0 R",
         .catalogue = "/AcroForm << /Fields [] /DR << /XObject 7 0 R >> >>",
         .objects = {form("f"), "<< /N 6 0 R >>"}},
    };
    for (const Place &place : places)
        QTest::newRow(place.name) << documentOf(place);
    // Here the page's own font is the name.
    QTest::newRow("of a font that a field is filled in with")
        << documentOf({.resources = {},
                       .page = "/Annots [<< /Subtype /FreeText /Rect [0 0 9 9]"
                               " /DA (/N 12 Tf 0 g) >>]"})
               .replace("/F 5 0 R", "/F 5 0 R /N 5 0 R");
}

void TestUnusedNames::kept()
{
    QFETCH(QByteArray, bytes);
    parsed::Document document(bytes);
    QVERIFY(hasName(resourcesOf(document)));
    engine::dropUnusedNames(document, {});
    QVERIFY(hasName(resourcesOf(document)));
    Object spaces = resourcesOf(document).getKey("/ColorSpace");
    QVERIFY(!spaces.isDictionary() ||
            bytes.contains("/DefaultRGB") == spaces.hasKey("/DefaultRGB"));
}

// One page shows what the other does not, from resources that both have of the tree.
void TestUnusedNames::inherited()
{
    const QByteArray page = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] ";
    parsed::Document document(
        pdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
               "<< /Type /Pages /Count 2 /Kids [3 0 R 4 0 R] /Resources 5 0 R >>", page + ">>",
               page + "/Contents 8 0 R >>", "<< /XObject << /N 6 0 R /M 7 0 R >> >>", form("f"),
               form("f"), pdfStream({}, "/N Do")}));
    engine::dropUnusedNames(document, {});
    Object names = document->getRoot().getKey("/Pages").getKey("/Resources").getKey("/XObject");
    QVERIFY(names.hasKey("/N"));
    QVERIFY(!names.hasKey("/M"));
}

// Two resources with one dictionary of names.
void TestUnusedNames::shared()
{
    const QByteArray page = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] "
                            "/Resources << /XObject 5 0 R >> ";
    parsed::Document document(pdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                                     "<< /Type /Pages /Count 2 /Kids [3 0 R 4 0 R] >>", page + ">>",
                                     page + "/Contents 8 0 R >>", "<< /N 6 0 R /M 7 0 R >>",
                                     form("f"), form("f"), pdfStream({}, "/N Do")}));
    engine::dropUnusedNames(document, {});
    QVERIFY(hasName(resourcesOf(document, 0)));
    QVERIFY(!resourcesOf(document, 1).getKey("/XObject").hasKey("/M"));
}

QTEST_GUILESS_MAIN(TestUnusedNames)
#include "tst_unusednames.moc"
