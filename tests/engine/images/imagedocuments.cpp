#include "imagedocuments.h"

#include "samples.h"

#include <cmath>

namespace imagedocuments {

QByteArray page(const QList<QByteArray> &objects, const QByteArray &content)
{
    const QByteArray ground = "0.2 0.8 0.6 rg 0 0 200 200 re f 0.9 0.1 0.1 rg ";
    return pdfOf(
        QList<QByteArray>{
            "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
            "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents"
            " 4 0 R /Resources << /XObject << /I 5 0 R >> >> >>",
            pdfStream({}, ground + (content.isEmpty() ? "100 0 0 100 50 50 cm /I Do" : content))} +
        objects);
}

QByteArray imageOf(const QByteArray &entries, const QByteArray &bytes, int pixels)
{
    const QByteArray size = QByteArray::number(pixels);
    return pdfStream("/Type /XObject /Subtype /Image /Width " + size + " /Height " + size + " " +
                         entries,
                     bytes);
}

QByteArray flateImage(const QByteArray &space, int components, int bits, const QByteArray &entries)
{
    const QByteArray samples = coding::samples(usualEdge, usualEdge, components);
    return imageOf("/Filter /FlateDecode /ColorSpace " + space + " /BitsPerComponent " +
                       QByteArray::number(bits) + " " + entries,
                   coding::flate(coding::packed(samples, usualEdge * components, bits)));
}

QByteArray jpegImage(const QByteArray &space, int components, coding::Colours colours,
                     const QByteArray &entries)
{
    return imageOf("/Filter /DCTDecode /BitsPerComponent 8 /ColorSpace " + space + " " + entries,
                   coding::jpeg(coding::samples(usualEdge, usualEdge, components), usualEdge,
                                usualEdge, components, colours));
}

engine::Bitmap bitmap(int pixels)
{
    auto result = engine::Bitmap::blank(quint32(pixels), quint32(pixels));
    for (int y = 0; y < pixels; ++y) {
        for (int x = 0; x < pixels; ++x) {
            const bool inside = std::hypot(x - pixels / 2, y - pixels / 3) < pixels / 4.;
            if (inside && x % 40 < 30)
                result->row(std::size_t(y))[x / 8] |= quint8(0x80 >> x % 8);
        }
    }
    return *result;
}

QByteArray bilevelImage(const QByteArray &entries)
{
    return imageOf(entries, QByteArray::fromStdString(bitmap(bilevelEdge).samples()), bilevelEdge);
}

const QByteArray palette = [] {
    QByteArray colours;
    for (int index = 0; index < 256; ++index) {
        for (const int channel : {index, 255 - index, index / 2})
            colours += QByteArray::number(channel + 256, 16).mid(1);
    }
    return QByteArray("[/Indexed /DeviceRGB 255 <" + colours + ">]");
}();

const QByteArray separation = "[/Separation /Spot /DeviceRGB << /FunctionType 2 /Domain [0 1] /N 1"
                              " /C0 [1 1 1] /C1 [.1 .2 .7] >>]";

QPDFObjectHandle entryOf(parsed::Document &document, const char *key)
{
    return document->getObject(5, 0).getDict().getKey(key);
}

} // namespace imagedocuments
