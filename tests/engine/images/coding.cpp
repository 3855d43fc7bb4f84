#include "coding.h"

#include <QRandomGenerator>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <jpeglib.h>

namespace coding {

namespace {

J_COLOR_SPACE givenSpace(int components)
{
    return components == 1 ? JCS_GRAYSCALE : components == 3 ? JCS_RGB : JCS_CMYK;
}

J_COLOR_SPACE codedSpace(int components, Colours colours)
{
    const bool converts =
        colours == Colours::AdobeYcc || (colours == Colours::Plain && components == 3);
    if (components == 1 || !converts)
        return givenSpace(components);
    return components == 3 ? JCS_YCbCr : JCS_YCCK;
}

} // namespace

QByteArray samples(int width, int height, int components)
{
    QRandomGenerator random(1);
    QByteArray result;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int component = 0; component < components; ++component) {
                const double wave = std::sin((x * (component + 1) + y * 2) / 60.0) * 60;
                const bool inside = std::hypot(x - width / 2, y - height / 3) < width / 5.0;
                const int grain = int(random.bounded(24));
                result += char(int(110 + wave + grain + (inside ? 50 - component * 30 : 0)));
            }
        }
    }
    return result;
}

QByteArray packed(const QByteArray &samples, int perRow, int bits)
{
    QByteArray result;
    for (qsizetype row = 0; row < samples.size(); row += perRow) {
        unsigned waiting = 0;
        int count = 0;
        for (int column = 0; column < perRow; ++column) {
            const unsigned sample = uchar(samples[row + column]);
            waiting = waiting << bits | (bits == 16 ? sample * 257 : sample >> (8 - bits));
            for (count += bits; count >= 8; count -= 8)
                result += char(waiting >> (count - 8));
        }
        if (count > 0)
            result += char(waiting << (8 - count));
    }
    return result;
}

QByteArray flate(const QByteArray &bytes)
{
    return qCompress(bytes).mid(4);
}

QByteArray jpeg(const QByteArray &samples, int width, int height, int components, Colours colours)
{
    jpeg_compress_struct coder = {};
    jpeg_error_mgr errors = {};
    coder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&coder);
    unsigned char *bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&coder, &bytes, &size);
    coder.image_width = JDIMENSION(width);
    coder.image_height = JDIMENSION(height);
    coder.input_components = components;
    coder.in_color_space = givenSpace(components);
    jpeg_set_defaults(&coder);
    jpeg_set_colorspace(&coder, codedSpace(components, colours));
    jpeg_set_quality(&coder, 95, TRUE);
    coder.write_Adobe_marker = colours == Colours::Adobe || colours == Colours::AdobeYcc;
    coder.write_JFIF_header = FALSE;
    jpeg_start_compress(&coder, TRUE);
    for (int row = 0; row < height; ++row) {
        QByteArray line = samples.mid(qsizetype(row) * width * components, width * components);
        auto *start = reinterpret_cast<JSAMPROW>(line.data());
        jpeg_write_scanlines(&coder, &start, 1);
    }
    jpeg_finish_compress(&coder);
    const QByteArray result(reinterpret_cast<const char *>(bytes), qsizetype(size));
    jpeg_destroy_compress(&coder);
    std::free(bytes);
    return result;
}

} // namespace coding
