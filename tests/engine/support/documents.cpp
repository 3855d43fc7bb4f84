#include "documents.h"

#include "bench.h"
#include "samples.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace documents {

namespace {

// Strokes that wander from row to row: hard for Flate, easy for a fax.
QByteArray wanderingStrokes()
{
    QRandomGenerator random(1);
    QList<int> strokes = {100, 220, 340, 460, 580, 700};
    QByteArray rows;
    for (int y = 0; y < 800; ++y) {
        QByteArray row(100, '\xff');
        for (int &stroke : strokes) {
            stroke += random.bounded(3) - 1;
            for (int x = stroke; x < stroke + 9; ++x)
                row[x / 8] = char(row[x / 8] & ~(0x80 >> x % 8));
        }
        rows += row;
    }
    return rows;
}

} // namespace

QByteArray withParts(const Parts &parts)
{
    QList<QByteArray> objects = {
        "<< /Type /Catalog /Pages 2 0 R " + parts.catalogue + " >>",
        "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 4 0 R /Resources << /Font "
        "<< /F 5 0 R >> " +
            parts.resources + " >> " + parts.page + " >>",
        pdfStream({}, "BT /F 12 Tf 20 160 Td (A line of text) Tj ET " + parts.content),
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>"};
    return pdfOf(objects + parts.objects)
        .replace("trailer << ", "trailer << " + parts.trailer + ' ');
}

QByteArray form(const QList<QByteArray> &moreObjects, const QByteArray &catalogue,
                const QByteArray &trailer)
{
    Parts parts;
    parts.trailer = trailer;
    parts.catalogue =
        catalogue +
        " /AcroForm << /Fields [6 0 R] /DA (/F 12 Tf) /DR << /Font << /F 5 0 R >> >> >>";
    parts.page = "/Annots [6 0 R]";
    parts.objects = {"<< /Type /Annot /Subtype /Widget /FT /Tx /T (name) /V (Zoe) /F 4 /P 3 0 R"
                     " /Rect [20 20 120 40] /DA (/F 12 Tf) /AP << /N 7 0 R >> >>",
                     pdfStream("/Type /XObject /Subtype /Form /BBox [0 0 100 20]"
                               " /Resources << /Font << /F 5 0 R >> >>",
                               "BT /F 12 Tf 2 5 Td (Zoe) Tj ET")};
    parts.objects += moreObjects;
    return withParts(parts);
}

QByteArray links(const QByteArray &box, const QByteArray &action, const QByteArray &annotations,
                 const QByteArray &catalogue)
{
    const QByteArray page = "<< /Type /Page /Parent 2 0 R " + box +
                            " /Contents 5 0 R"
                            " /Resources << /Font << /F 6 0 R >> >> ";
    return pdfOf({"<< /Type /Catalog /Pages 2 0 R /Dests << /end [4 0 R /XYZ 60 200 0] >> " +
                      catalogue + " >>",
                  "<< /Type /Pages /Count 2 /Kids [3 0 R 4 0 R] >>",
                  page + "/Annots [" + annotations + "] >>", page + ">>",
                  pdfStream({}, "BT /F 12 Tf 20 160 Td (A line of text) Tj ET " +
                                    QByteArray("0 0 m 9 9 l S ").repeated(1000)),
                  "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
                  "<< /Type /Annot /Subtype /Link /Rect [10 10 90 30] /Border [0 0 0]"
                  " /Dest /end >>",
                  "<< /Type /Annot /Subtype /Link /Rect [10 40 90 60] /Border [0 0 0]"
                  " /A << " +
                      action + " >> >>"});
}

QByteArray upright()
{
    Parts parts;
    parts.content = "BT /F 12 Tf 0 1 -1 0 100 20 Tm (This text runs from bottom to top) Tj"
                    " 0 1 -1 0 120 20 Tm (and this one just as well) Tj"
                    " 0 1 -1 0 140 20 Tm (and this one, too) Tj ET";
    return withParts(parts);
}

QByteArray scan()
{
    Parts parts;
    parts.content = "q 144 0 0 144 0 0 cm /I Do Q";
    parts.resources = "/XObject << /I 6 0 R >>";
    parts.objects = {pdfStream("/Type /XObject /Subtype /Image /Width 800 /Height 800"
                               " /BitsPerComponent 1 /ColorSpace /DeviceGray",
                               wanderingStrokes())};
    const QTemporaryDir folder;
    write(folder.filePath(u"raw.pdf"_s), withParts(parts));
    tools::outputOf(u"gs"_s,
                    {u"-q"_s, u"-dBATCH"_s, u"-dNOPAUSE"_s, u"-sDEVICE=pdfwrite"_s,
                     u"-dAutoFilterMonoImages=false"_s, u"-dMonoImageFilter=/CCITTFaxEncode"_s,
                     u"-dDownsampleMonoImages=false"_s,
                     "-sOutputFile="_L1 + folder.filePath(u"scan.pdf"_s),
                     folder.filePath(u"raw.pdf"_s)});
    return contentOf(folder.filePath(u"scan.pdf"_s));
}

// The glyphs 68 to 70 of the font; what they look like doesn't matter.
QByteArray ligature()
{
    Parts parts;
    parts.content = "BT /C 12 Tf 20 100 Td <004400460045> Tj ET";
    parts.objects = {
        "<< /Type /Font /Subtype /Type0 /BaseFont /Sans /Encoding /Identity-H /DescendantFonts"
        " [7 0 R] /ToUnicode 9 0 R >>",
        "<< /Type /Font /Subtype /CIDFontType2 /BaseFont /Sans /CIDToGIDMap /Identity /DW 600"
        " /CIDSystemInfo << /Registry (Adobe) /Ordering (Identity) /Supplement 0 >>"
        " /FontDescriptor 8 0 R >>",
        "<< /Type /FontDescriptor /FontName /Sans /Flags 4 /FontBBox [0 0 1000 1000] /ItalicAngle 0"
        " /Ascent 800 /Descent -200 /CapHeight 700 /StemV 80 /FontFile2 10 0 R >>",
        pdfStream({}, "/CIDInit /ProcSet findresource begin begincmap /CMapType 2 def\n"
                      "1 begincodespacerange <0000> <ffff> endcodespacerange\n3 beginbfchar\n"
                      "<0044> <0061>\n<0045> <0062>\n<0046> <006600660069>\nendbfchar\n"
                      "endcmap end"),
        pdfStream({}, contentOf(u"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"_s))};
    return withParts(parts).replace("/F 5 0 R >>", "/F 5 0 R /C 6 0 R >>");
}

// Its information dictionary is its page tree, which leads back to itself.
QByteArray unreadableForGhostscript()
{
    Parts parts;
    parts.trailer = "/Info 2 0 R";
    return withParts(parts);
}

QByteArray rewritten(const QByteArray &document, const QStringList &qpdfOptions)
{
    const QTemporaryDir folder;
    write(folder.filePath(u"in.pdf"_s), document);
    tools::outputOf(u"qpdf"_s, qpdfOptions + QStringList{folder.filePath(u"in.pdf"_s),
                                                         folder.filePath(u"out.pdf"_s)});
    return contentOf(folder.filePath(u"out.pdf"_s));
}

} // namespace documents
