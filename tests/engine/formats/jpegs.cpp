#include "jpegs.h"

#include <QRandomGenerator>

#include <cstdlib>

namespace jpegs {

namespace {

QByteArray rowOf(int y, int size, QRandomGenerator &random)
{
    QByteArray row;
    for (int x = 0; x < size; ++x)
        row += char(x / 2 + y + random.bounded(24));
    return row;
}

void set(jpeg_compress_struct &writer, const Recipe &recipe)
{
    writer.image_width = JDIMENSION(recipe.width);
    writer.image_height = JDIMENSION(recipe.height);
    writer.in_color_space = recipe.colours;
    writer.input_components = recipe.colours == JCS_GRAYSCALE ? 1
                              : recipe.colours == JCS_CMYK    ? 4
                                                              : 3;
    jpeg_set_defaults(&writer);
    jpeg_set_colorspace(&writer, recipe.coded);
    writer.comp_info[0].h_samp_factor = writer.comp_info[0].v_samp_factor = recipe.sampling;
    writer.write_JFIF_header = recipe.jfif;
    writer.write_Adobe_marker = recipe.adobe;
    writer.arith_code = recipe.arithmetic;
    writer.restart_interval = recipe.restartInterval;
    if (recipe.progressive)
        jpeg_simple_progression(&writer);
}

} // namespace

QByteArray made(const Recipe &recipe)
{
    jpeg_error_mgr errors;
    jpeg_compress_struct writer = {};
    writer.err = jpeg_std_error(&errors);
    jpeg_create_compress(&writer);
    unsigned char *bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&writer, &bytes, &size);
    set(writer, recipe);
    jpeg_start_compress(&writer, TRUE);
    if (!recipe.comment.isEmpty())
        jpeg_write_marker(&writer, JPEG_COM,
                          reinterpret_cast<const JOCTET *>(recipe.comment.constData()),
                          unsigned(recipe.comment.size()));
    QRandomGenerator random(7);
    for (int y = 0; y < recipe.height; ++y) {
        QByteArray row = rowOf(y, recipe.width * writer.input_components, random);
        auto *samples = reinterpret_cast<JSAMPROW>(row.data());
        jpeg_write_scanlines(&writer, &samples, 1);
    }
    jpeg_finish_compress(&writer);
    jpeg_destroy_compress(&writer);
    QByteArray jpeg(reinterpret_cast<const char *>(bytes), qsizetype(size));
    std::free(bytes);
    return jpeg;
}

Read read(const QByteArray &jpeg)
{
    jpeg_error_mgr errors;
    jpeg_decompress_struct reader = {};
    reader.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&reader);
    jpeg_mem_src(&reader, reinterpret_cast<const unsigned char *>(jpeg.constData()),
                 static_cast<unsigned long>(jpeg.size()));
    jpeg_save_markers(&reader, JPEG_COM, 0xFFFF);
    for (int marker = 0; marker < 16; ++marker)
        jpeg_save_markers(&reader, JPEG_APP0 + marker, 0xFFFF);
    jpeg_read_header(&reader, TRUE);
    Read result;
    result.taken = reader.jpeg_color_space;
    result.adobeTransform = reader.saw_Adobe_marker ? reader.Adobe_transform : -1;
    result.jfif = reader.saw_JFIF_marker;
    result.progressive = reader.progressive_mode;
    for (auto *marker = reader.marker_list; marker; marker = marker->next)
        ++result.markers;
    reader.out_color_space = reader.jpeg_color_space;
    jpeg_start_decompress(&reader);
    QByteArray row(qsizetype(reader.output_width) * reader.output_components, '\0');
    while (reader.output_scanline < reader.output_height) {
        auto *samples = reinterpret_cast<JSAMPROW>(row.data());
        jpeg_read_scanlines(&reader, &samples, 1);
        result.samples += row;
    }
    jpeg_finish_decompress(&reader);
    result.warnings = errors.num_warnings;
    jpeg_destroy_decompress(&reader);
    return result;
}

} // namespace jpegs
