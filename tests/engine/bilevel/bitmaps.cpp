#include "bitmaps.h"

#include "bench.h"
#include "samples.h"

#include <QDir>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

std::string_view viewOf(const QByteArray &bytes)
{
    return {bytes.constData(), size_t(bytes.size())};
}

QByteArray bytesOf(const std::string &text)
{
    return QByteArray::fromStdString(text);
}

QString numbered(const QString &folder, qsizetype number, const QString &suffix)
{
    return QDir(folder).filePath(QString::number(number) + suffix);
}

bool run(const QString &program, const QStringList &arguments)
{
    const tools::Result result = tools::run(program, arguments);
    if (result.status != 0)
        qWarning("%s: %s", qPrintable(program), (result.output + result.errors).constData());
    return result.status == 0;
}

bool runGhostscript(const QString &folder, const QByteArray &program)
{
    const QString file = QDir(folder).filePath(u"program.ps"_s);
    write(file, program);
    return run(Bench::ghostscript(), {u"-q"_s, u"-dBATCH"_s, u"-dNOPAUSE"_s, u"-dNODISPLAY"_s,
                                      "--permit-file-all="_L1 + folder + "/*"_L1, file});
}

QByteArray postScriptFile(const QString &path, const char *mode)
{
    return "(" + path.toUtf8() + ") (" + mode + ") file";
}

// A PBM file's rows are a bitmap's, but for the padding.
std::optional<engine::Bitmap> bitmapOfPbm(const QByteArray &file, quint32 width, quint32 height)
{
    const QByteArray size = QByteArray::number(width) + ' ' + QByteArray::number(height);
    if (!file.startsWith("P4\n" + size + '\n'))
        return {};
    auto bitmap = engine::Bitmap::ofSamples(width, height, viewOf(file.mid(size.size() + 4)));
    if (bitmap)
        bitmap->invert();
    return bitmap;
}

Bitmaps bitmapsOfPbms(const QList<Jbig2Stream> &streams, const QStringList &files)
{
    Bitmaps bitmaps;
    for (qsizetype i = 0; i < streams.size(); ++i) {
        const auto bitmap = bitmapOfPbm(contentOf(files[i]), streams[i].width, streams[i].height);
        if (!bitmap)
            return {};
        bitmaps << *bitmap;
    }
    return bitmaps;
}

QByteArray jbig2Image(const Jbig2Stream &stream)
{
    return "<< /Type /XObject /Subtype /Image /BitsPerComponent 1 /ColorSpace /DeviceGray /Width " +
           QByteArray::number(stream.width) + " /Height " + QByteArray::number(stream.height) +
           " /Filter /JBIG2Decode /Length " + QByteArray::number(qsizetype(stream.data.size())) +
           " >>\nstream\n" + bytesOf(stream.data) + "\nendstream";
}

} // namespace

engine::Bitmap drawn(quint32 width, quint32 height,
                     const std::function<bool(quint32 x, quint32 y)> &isBlack)
{
    engine::Bitmap bitmap = *engine::Bitmap::blank(width, height);
    for (quint32 y = 0; y < height; ++y) {
        for (quint32 x = 0; x < width; ++x) {
            if (isBlack(x, y))
                bitmap.row(y)[x / 8] |= quint8(0x80U >> x % 8);
        }
    }
    return bitmap;
}

engine::Bitmap solid(quint32 width, quint32 height, bool black)
{
    return drawn(width, height, [black](quint32, quint32) { return black; });
}

engine::Bitmap noise(quint32 width, quint32 height, quint32 density, QRandomGenerator &random)
{
    return drawn(width, height, [&](quint32, quint32) { return random.bounded(100U) < density; });
}

engine::Bitmap text(quint32 width, quint32 height, QRandomGenerator &random)
{
    constexpr quint32 edge = 8;
    constexpr quint32 cell = 3 * edge;
    const engine::Bitmap letters = noise(16 * edge, edge, 40, random);
    const quint32 inLine = width / cell + 1;
    QList<quint32> letter((height / cell + 1) * inLine);
    for (quint32 &one : letter)
        one = random.bounded(16U);
    return drawn(width, height, [&](quint32 x, quint32 y) {
        const quint32 across = letter[y / cell * inLine + x / cell] * edge + x % cell / 2;
        const quint32 down = y % cell / 2;
        const bool inside = x % cell < 2 * edge && down < edge;
        return inside && (letters.row(down)[across / 8] & 0x80U >> across % 8) != 0;
    });
}

engine::Bitmap halftone(quint32 width, quint32 height, quint32 period)
{
    const auto dot = [period](quint32 place) {
        return std::cos(2 * M_PI * double(place % period) / period);
    };
    QRandomGenerator grain(7);
    return drawn(width, height, [&](quint32 x, quint32 y) {
        const double shade = std::sin(x / 90.0) * std::cos(y / 70.0) + grain.bounded(0.4);
        return (dot(x) + dot(y)) / 2 > shade;
    });
}

engine::Bitmap anyBitmap(quint32 width, quint32 height, QRandomGenerator &random)
{
    width = random.bounded(width) + 1;
    height = random.bounded(height) + 1;
    const quint32 kind = random.bounded(4U);
    engine::Bitmap bitmap = kind == 0   ? text(width, height, random)
                            : kind == 1 ? halftone(width, height, random.bounded(60U) + 4)
                                        : noise(width, height, random.bounded(101U), random);
    if (random.bounded(2) == 0)
        bitmap.invert();
    for (quint32 y = 1; y < height; ++y) {
        if (random.bounded(4) == 0)
            std::copy_n(bitmap.row(y - 1), bitmap.stride(), bitmap.row(y));
    }
    return bitmap;
}

Bitmaps decodedByJbig2dec(const QList<Jbig2Stream> &streams, const QString &folder)
{
    QStringList results;
    for (qsizetype i = 0; i < streams.size(); ++i) {
        const QString file = numbered(folder, i, u".jb2"_s);
        results << numbered(folder, i, u".pbm"_s);
        write(file, bytesOf(streams[i].data));
        QFile::remove(results.last());
        if (!run(u"jbig2dec"_s, {u"-e"_s, u"-t"_s, u"pbm"_s, u"-o"_s, results.last(), file}))
            return {};
    }
    return bitmapsOfPbms(streams, results);
}

Bitmaps decodedByPoppler(const QList<Jbig2Stream> &streams, const QString &folder)
{
    QList<QByteArray> objects = {
        "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>", {}, {}};
    QByteArray names;
    QByteArray content;
    QStringList results;
    for (const Jbig2Stream &stream : streams) {
        objects << jbig2Image(stream);
        const QByteArray number = QByteArray::number(objects.size());
        names += "/I" + number + ' ' + number + " 0 R ";
        content += "/I" + number + " Do\n";
        results << QDir(folder).filePath(
            u"image-%1.pbm"_s.arg(results.size(), 3, 10, QLatin1Char('0')));
    }
    objects[2] = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 9 9] /Contents 4 0 R /Resources << "
                 "/XObject << " +
                 names + ">> >> >>";
    objects[3] = "<< /Length " + QByteArray::number(content.size()) + " >>\nstream\n" + content +
                 "endstream";
    const QString document = QDir(folder).filePath(u"images.pdf"_s);
    write(document, pdfOf(objects));
    if (!run(u"pdfimages"_s, {document, QDir(folder).filePath(u"image"_s)}))
        return {};
    return bitmapsOfPbms(streams, results);
}

Bitmaps decodedByGhostscript(const QList<Jbig2Stream> &streams, const QString &folder)
{
    QByteArray program = "/buffer 65535 string def\n";
    for (qsizetype i = 0; i < streams.size(); ++i) {
        const QString file = numbered(folder, i, u".jb2"_s);
        write(file, bytesOf(streams[i].data));
        program += "/from " + postScriptFile(file, "r") + " /JBIG2Decode filter def /to " +
                   postScriptFile(numbered(folder, i, u".samples"_s), "w") +
                   " def { from buffer readstring exch to exch writestring not { exit } if } loop "
                   "to closefile\n";
    }
    if (!runGhostscript(folder, program))
        return {};
    Bitmaps bitmaps;
    for (qsizetype i = 0; i < streams.size(); ++i) {
        const QByteArray samples = contentOf(numbered(folder, i, u".samples"_s));
        const auto bitmap =
            engine::Bitmap::ofSamples(streams[i].width, streams[i].height, viewOf(samples));
        if (!bitmap)
            return {};
        bitmaps << *bitmap;
    }
    return bitmaps;
}

QList<QByteArray> encodedByGhostscript(const Bitmaps &bitmaps, const QByteArray &parameters,
                                       const QString &folder)
{
    QByteArray program = "/buffer 65535 string def\n";
    for (qsizetype i = 0; i < bitmaps.size(); ++i) {
        const QString file = numbered(folder, i, u".samples"_s);
        write(file, bytesOf(bitmaps[i].samples()));
        program += "/from " + postScriptFile(file, "r") + " def /to " +
                   postScriptFile(numbered(folder, i, u".fax"_s), "w") + " def /filtered to << " +
                   parameters + " /Columns " + QByteArray::number(bitmaps[i].width()) + " /Rows " +
                   QByteArray::number(bitmaps[i].height()) +
                   " >> /CCITTFaxEncode filter def { from buffer readstring exch filtered exch "
                   "writestring not { exit } if } loop filtered closefile to closefile\n";
    }
    if (!runGhostscript(folder, program))
        return {};
    QList<QByteArray> streams;
    for (qsizetype i = 0; i < bitmaps.size(); ++i)
        streams << contentOf(numbered(folder, i, u".fax"_s));
    return streams;
}
