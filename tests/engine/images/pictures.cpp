#include "pictures.h"

#include "bench.h"
#include "documents.h"

#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace pictures {

namespace {

struct Picture
{
    int width = 0;
    int height = 0;
    QByteArray samples; // three bytes a pixel
};

enum class Reader { Poppler, Mutool };

constexpr double everything = 256;
constexpr int square = 8;
constexpr int channels = 3;

Picture pictureOf(const QByteArray &file)
{
    const QList<QByteArray> head = file.left(40).simplified().split(' ');
    const Picture picture{head.value(1).toInt(), head.value(2).toInt(), {}};
    return {picture.width, picture.height, file.right(picture.width * picture.height * channels)};
}

double meanOf(const Picture &picture, int left, int top, int channel)
{
    int sum = 0;
    int count = 0;
    for (int y = top; y < qMin(top + square, picture.height); ++y) {
        for (int x = left; x < qMin(left + square, picture.width); ++x, ++count)
            sum += uchar(picture.samples[(y * picture.width + x) * channels + channel]);
    }
    return double(sum) / count;
}

double difference(const Picture &one, const Picture &other)
{
    if (one.width != other.width || one.height != other.height)
        return everything;
    double worst = 0;
    for (int y = 0; y < one.height; y += square) {
        for (int x = 0; x < one.width; x += square) {
            for (int channel = 0; channel < channels; ++channel)
                worst =
                    qMax(worst, qAbs(meanOf(one, x, y, channel) - meanOf(other, x, y, channel)));
        }
    }
    return worst;
}

QList<Picture> drawn(Reader reader, const QByteArray &document)
{
    QTemporaryDir folder;
    const QString input = folder.filePath(u"document.pdf"_s);
    write(input, document);
    if (reader == Reader::Poppler)
        tools::outputOf(u"pdftoppm"_s, {u"-r"_s, u"72"_s, input, folder.filePath(u"page"_s)});
    else
        tools::outputOf(u"mutool"_s, {u"draw"_s, u"-q"_s, u"-r"_s, u"72"_s, u"-o"_s,
                                      folder.filePath(u"page%4d.ppm"_s), input});
    QList<Picture> result;
    for (const QString &name : QDir(folder.path()).entryList({u"*.ppm"_s}, QDir::Files, QDir::Name))
        result << pictureOf(contentOf(folder.filePath(name)));
    return result;
}

bool isPlain(const Picture &picture)
{
    for (qsizetype index = channels; index < picture.samples.size(); ++index) {
        if (picture.samples[index] != picture.samples[index - channels])
            return false;
    }
    return true;
}

} // namespace

double difference(const QByteArray &document, const QByteArray &original)
{
    double worst = 0;
    for (const Reader reader : {Reader::Poppler, Reader::Mutool}) {
        const auto expected = drawn(reader, original);
        const auto pages = drawn(reader, document);
        if (isPlain(expected.value(0)) || pages.size() != expected.size())
            return everything;
        for (int page = 0; page < pages.size(); ++page)
            worst = qMax(worst, difference(pages[page], expected[page]));
    }
    return worst;
}

} // namespace pictures
