#include "samples.h"

#include <QRandomGenerator>

namespace {

QByteArray noise(int count)
{
    QRandomGenerator generator(1);
    QByteArray bytes(count, '\0');
    for (char &byte : bytes)
        byte = char(generator.bounded(256));
    return bytes;
}

QByteArray imageOf(int edge)
{
    const QByteArray size = QByteArray::number(edge);
    return pdfStream("/Type /XObject /Subtype /Image /BitsPerComponent 8 /ColorSpace /DeviceGray"
                     " /Width " +
                         size + " /Height " + size,
                     noise(edge * edge));
}

} // namespace

QByteArray samplePdf(int pages, int imageEdge)
{
    QList<QByteArray> objects = {"<< /Type /Catalog /Pages 2 0 R >>",
                                 {},
                                 "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
                                 imageOf(imageEdge)};
    QByteArray kids;
    for (int page = 1; page <= pages; ++page) {
        kids += QByteArray::number(objects.size() + 1) + " 0 R ";
        objects << "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 300 300] /Resources << /Font << /F "
                   "3 0 R >> /XObject << /I 4 0 R >> >> /Contents " +
                       QByteArray::number(objects.size() + 2) + " 0 R >>";
        objects << pdfStream({}, "BT /F 24 Tf 40 250 Td (Page " + QByteArray::number(page) +
                                     ") Tj ET\nq 200 0 0 200 40 20 cm /I Do Q");
    }
    objects[1] = "<< /Type /Pages /Count " + QByteArray::number(pages) + " /Kids [" + kids + "] >>";
    return pdfOf(objects);
}

QByteArray pdfStream(const QByteArray &entries, const QByteArray &data)
{
    return "<< " + entries + " /Length " + QByteArray::number(data.size()) + " >>\nstream\n" +
           data + "\nendstream";
}

QByteArray pdfOf(const QList<QByteArray> &objects)
{
    QByteArray file = "%PDF-1.4\n";
    QByteArray table = "0000000000 65535 f \n";
    for (int number = 1; number <= objects.size(); ++number) {
        table += QByteArray::number(file.size()).rightJustified(10, '0') + " 00000 n \n";
        file += QByteArray::number(number) + " 0 obj\n" + objects[number - 1] + "\nendobj\n";
    }
    const QByteArray count = QByteArray::number(objects.size() + 1);
    return file + "xref\n0 " + count + "\n" + table + "trailer << /Root 1 0 R /Size " + count +
           " >>\nstartxref\n" + QByteArray::number(file.size()) + "\n%%EOF\n";
}
