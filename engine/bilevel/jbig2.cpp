#include "jbig2.h"

#include "halftone.h"

#include <utility>

namespace engine {

namespace {

// T.88, 7.3
enum class Segment { ImmediateLosslessGenericRegion = 39, PageInformation = 48 };

std::string number(std::uint32_t value)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += char(value >> shift & 0xFF);
    return bytes;
}

std::string byte(unsigned value)
{
    return {char(value)};
}

// Refers to no other segment, and belongs to page 1: in a PDF stream all pages have that number.
std::string segment(std::uint32_t serial, Segment type, const std::string &data)
{
    return number(serial) + byte(unsigned(type)) + byte(0) + byte(1) +
           number(std::uint32_t(data.size())) + data;
}

std::string size(const Bitmap &bitmap)
{
    return number(bitmap.width()) + number(bitmap.height());
}

std::string pageInformation(const Bitmap &bitmap)
{
    const std::string unknownResolution = number(0) + number(0);
    const std::string lossless = byte(1);
    const std::string noStripes = byte(0) + byte(0);
    return size(bitmap) + unknownResolution + lossless + noStripes;
}

std::string genericRegion(const Bitmap &bitmap, const RegionCoding &coding)
{
    const std::string place = number(0) + number(0);
    const std::string combination = byte(0);
    const unsigned flags = unsigned(coding.pattern) << 1 | (coding.typical ? 8U : 0U);
    return size(bitmap) + place + combination + byte(flags) + adaptivePixels(coding) +
           encodeRegion(bitmap, coding);
}

// Which of them is best can't be told beforehand. Rows that are marked as typical pay in drawings;
// with less to learn, the smaller template does in little text. A halftone gets one more.
constexpr RegionCoding codings[] = {{0, false}, {0, true}, {1, false}};

} // namespace

std::string encodeJbig2(const Bitmap &bitmap)
{
    std::string best;
    const auto keepBetter = [&](const RegionCoding &coding) {
        std::string stream = encodeJbig2(bitmap, coding);
        if (best.empty() || stream.size() < best.size())
            best = std::move(stream);
    };
    for (const RegionCoding &coding : codings)
        keepBetter(coding);
    if (const unsigned period = halftonePeriod(bitmap); period != 0)
        keepBetter({0, false, period});
    return best;
}

std::string encodeJbig2(const Bitmap &bitmap, const RegionCoding &coding)
{
    if (bitmap.width() == 0 || bitmap.height() == 0)
        return {};
    return segment(0, Segment::PageInformation, pageInformation(bitmap)) +
           segment(1, Segment::ImmediateLosslessGenericRegion, genericRegion(bitmap, coding));
}

} // namespace engine
