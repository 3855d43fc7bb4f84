#include "jpegrecoding.h"

#include "jpegscans.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstring>

namespace engine {

namespace {

// Two bytes each; a reader of the progressive JPEG has to hold them all at once, as we do.
constexpr std::size_t mostCoefficients = std::size_t(100) << 20;

// Below this size, the headers of the scans can cost more than progression saves.
constexpr std::size_t smallSize = std::size_t(16) << 10;

constexpr int jfifMarker = JPEG_APP0;
constexpr int adobeMarker = JPEG_APP0 + 14;
constexpr unsigned jfifLength = 14;
constexpr unsigned adobeLength = 12;

struct ErrorManager
{
    jpeg_error_mgr base = {}; // first: libjpeg knows this alone
    std::jmp_buf back = {};
};

[[noreturn]] void giveUp(j_common_ptr codec)
{
    std::longjmp(reinterpret_cast<ErrorManager *>(codec->err)->back, 1);
}

// A warning is damage that libjpeg fills up with something of its own. Traces are not.
void take(j_common_ptr codec, int level)
{
    if (level < 0)
        giveUp(codec);
}

void initialise(ErrorManager &errors)
{
    jpeg_std_error(&errors.base);
    errors.base.error_exit = giveUp;
    errors.base.emit_message = take;
}

// Room for fewer bytes than there were; what would be longer is given up.
struct Destination
{
    jpeg_destination_mgr base = {}; // first: libjpeg knows this alone
    std::string bytes;

    explicit Destination(std::size_t size)
        : bytes(size, '\0')
    {
        base.init_destination = [](j_compress_ptr) {};
        base.empty_output_buffer = [](j_compress_ptr codec) -> boolean {
            giveUp(reinterpret_cast<j_common_ptr>(codec));
        };
        base.term_destination = [](j_compress_ptr) {};
        base.next_output_byte = reinterpret_cast<JOCTET *>(bytes.data());
        base.free_in_buffer = bytes.size();
    }

    std::string take()
    {
        bytes.resize(bytes.size() - base.free_in_buffer);
        return std::move(bytes);
    }
};

// What libjpeg allocates is released here whatever it jumps out of: nothing between a jump and its
// target has a destructor.
struct Reader
{
    ErrorManager errors;
    jpeg_decompress_struct codec = {};
    jvirt_barray_ptr *coefficients = nullptr;

    Reader()
    {
        initialise(errors);
        codec.err = &errors.base;
    }
    ~Reader() { jpeg_destroy_decompress(&codec); }
    Reader(const Reader &) = delete;
    Reader &operator=(const Reader &) = delete;
};

struct Writer
{
    ErrorManager errors;
    jpeg_compress_struct codec = {};
    Destination destination;
    std::vector<jpeg_scan_info> scans; ///< none: a sequential JPEG

    Writer(std::size_t size, std::vector<jpeg_scan_info> itsScans)
        : destination(size)
        , scans(std::move(itsScans))
    {
        initialise(errors);
        codec.err = &errors.base;
    }
    ~Writer() { jpeg_destroy_compress(&codec); }
    Writer(const Writer &) = delete;
    Writer &operator=(const Writer &) = delete;
};

void readHeader(jpeg_decompress_struct &reader, const std::string &jpeg)
{
    jpeg_create_decompress(&reader);
    jpeg_mem_src(&reader, reinterpret_cast<const unsigned char *>(jpeg.data()), jpeg.size());
    jpeg_save_markers(&reader, jfifMarker, jfifLength);
    jpeg_save_markers(&reader, adobeMarker, adobeLength);
    jpeg_read_header(&reader, TRUE);
}

bool isSuitable(const jpeg_decompress_struct &reader)
{
    const auto samples =
        std::size_t(reader.image_width) * reader.image_height * std::size_t(reader.num_components);
    return !reader.arith_code && samples <= mostCoefficients;
}

// Readers smooth over what the last scans of a progressive JPEG would have brought.
bool isComplete(const jpeg_decompress_struct &reader)
{
    if (!reader.coef_bits)
        return true;
    for (int component = 0; component < reader.num_components; ++component) {
        const auto &bits = reader.coef_bits[component];
        if (std::any_of(bits, bits + DCTSIZE2, [](int open) { return open != 0; }))
            return false;
    }
    return true;
}

// Producers round up to even lengths, and Ghostscript (10.00) ends a JPEG twice that it passes
// through. Anything else may be for somebody.
bool isPadding(const jpeg_source_mgr &source)
{
    constexpr std::array<JOCTET, 6> padding = {0, '\n', '\r', ' ', 0xFF, JPEG_EOI};
    return std::all_of(source.next_input_byte, source.next_input_byte + source.bytes_in_buffer,
                       [&](JOCTET byte) {
                           return std::find(padding.begin(), padding.end(), byte) != padding.end();
                       });
}

bool isJfif(const jpeg_marker_struct &marker)
{
    return marker.marker == jfifMarker && marker.data_length >= jfifLength &&
           std::memcmp(marker.data, "JFIF", 5) == 0;
}

bool isAdobe(const jpeg_marker_struct &marker)
{
    return marker.marker == adobeMarker && marker.data_length >= adobeLength &&
           std::memcmp(marker.data, "Adobe", 5) == 0;
}

// libjpeg's own ones would say what it takes the colours for, where the JPEG leaves that to a PDF.
void writeMarkers(jpeg_compress_struct &writer, const jpeg_decompress_struct &reader)
{
    for (auto *marker = reader.marker_list; marker; marker = marker->next) {
        if (!isJfif(*marker) && !isAdobe(*marker))
            continue;
        if (isJfif(*marker))
            marker->data[12] = marker->data[13] = 0; // the size of its preview
        jpeg_write_marker(&writer, marker->marker, marker->data, marker->data_length);
    }
}

bool isRead(Reader &reader, const std::string &jpeg)
{
    if (setjmp(reader.errors.back) != 0)
        return false;
    readHeader(reader.codec, jpeg);
    if (!isSuitable(reader.codec))
        return false;
    reader.coefficients = jpeg_read_coefficients(&reader.codec);
    return isComplete(reader.codec) && isPadding(*reader.codec.src);
}

bool isWritten(Writer &writer, Reader &reader)
{
    if (setjmp(writer.errors.back) != 0)
        return false;
    jpeg_create_compress(&writer.codec);
    writer.codec.dest = &writer.destination.base;
    jpeg_copy_critical_parameters(&reader.codec, &writer.codec);
    writer.codec.optimize_coding = TRUE;
    writer.codec.scan_info = writer.scans.empty() ? nullptr : writer.scans.data();
    writer.codec.num_scans = int(writer.scans.size());
    writer.codec.write_JFIF_header = FALSE;
    writer.codec.write_Adobe_marker = FALSE;
    jpeg_write_coefficients(&writer.codec, reader.coefficients);
    writeMarkers(writer.codec, reader.codec);
    jpeg_finish_compress(&writer.codec);
    return true;
}

// Nothing if it is not smaller than so many bytes.
std::optional<std::string> written(Reader &reader, std::vector<jpeg_scan_info> scans,
                                   std::size_t size)
{
    Writer writer(size - 1, std::move(scans));
    if (!isWritten(writer, reader))
        return {};
    return writer.destination.take();
}

} // namespace

std::optional<std::string> recodedJpeg(const std::string &jpeg)
{
    Reader reader;
    if (jpeg.empty() || !isRead(reader, jpeg))
        return {};
    auto progressive = written(reader, progressiveScans(reader.codec), jpeg.size());
    if (jpeg.size() > smallSize)
        return progressive;
    auto sequential = written(reader, {}, progressive ? progressive->size() : jpeg.size());
    return sequential ? sequential : progressive;
}

} // namespace engine
