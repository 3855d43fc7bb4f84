#include "fontdocuments.h"

#include "samples.h"

#include <QFile>

namespace fontdocuments {

namespace {

QByteArray font(const Font &font)
{
    if (!font.composite.isEmpty())
        return "<< /Type /Font /Subtype /Type0 /BaseFont /Triangles /DescendantFonts [6 0 R] " +
               font.composite + " >>";
    QByteArray widths;
    for (int code = 0; code < 256; ++code)
        widths += "700 ";
    return "<< /Type /Font /BaseFont /Triangles /FirstChar 0 /LastChar 255 /Widths [" + widths +
           "] /FontDescriptor 7 0 R " + font.entries + " >>";
}

QByteArray descendant(const Font &font)
{
    if (font.composite.isEmpty())
        return "null";
    return "<< /Type /Font /BaseFont /Triangles /DW 700 /FontDescriptor 7 0 R"
           " /CIDSystemInfo << /Registry (Adobe) /Ordering (Identity) /Supplement 0 >> " +
           font.entries + " >>";
}

} // namespace

QByteArray program(const QString &name)
{
    QFile file(QStringLiteral(CORVANE_FONTS_FOLDER) + QLatin1Char('/') + name);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray text(const QByteArray &codes)
{
    return "BT /F 20 Tf 10 100 Td <" + codes + "> Tj ET ";
}

QByteArray showing(const QByteArray &content, const Font &shown, const Rest &rest)
{
    return pdfOf(QList<QByteArray>{
                     "<< /Type /Catalog /Pages 2 0 R " + rest.catalogue + " >>",
                     "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
                     "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents 4 0 R"
                     " /Resources << /Font << /F 5 0 R >> " +
                         rest.resources + " >> " + rest.page + " >>",
                     pdfStream({}, content), font(shown), descendant(shown),
                     "<< /Type /FontDescriptor /FontName /Triangles /FontBBox [0 -200 1000 800]"
                     " /ItalicAngle 0 /Ascent 800 /Descent -200 /CapHeight 700 /StemV 80 " +
                         shown.descriptor + " " + shown.key + " 8 0 R >>",
                     pdfStream(shown.streamEntries, shown.program)} +
                 rest.objects);
}

} // namespace fontdocuments
