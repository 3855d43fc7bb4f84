#include "samples.h"

#include "pdf/foreign.h"
#include "pdf/streams.h"

#include <algorithm>

namespace engine {

namespace {

std::optional<std::string> paletteOf(QPDFObjectHandle space)
{
    QPDFObjectHandle table = space.getArrayItem(3);
    if (table.isString())
        return table.getStringValue();
    return table.isStream() ? decodedBytesOf(table) : std::nullopt;
}

// Components of so many bits, in rows that begin with a byte of their own.
class Unpacker
{
public:
    Unpacker(const std::string &packed, const ImageFacts &facts, std::size_t perRow)
        : m_packed(packed)
        , m_bits(std::size_t(facts.bits))
        , m_stride((perRow * m_bits + 7) / 8)
    {
    }

    [[nodiscard]] std::size_t stride() const { return m_stride; }

    /// Of components of 16 bits the upper byte.
    [[nodiscard]] unsigned valueAt(std::size_t row, std::size_t column) const
    {
        const std::size_t bit = column * m_bits;
        const auto byte = static_cast<unsigned char>(m_packed[row * m_stride + bit / 8]);
        if (m_bits >= 8)
            return byte;
        return unsigned(byte) >> (8 - m_bits - bit % 8) & ((1U << m_bits) - 1);
    }

private:
    const std::string &m_packed;
    std::size_t m_bits;
    std::size_t m_stride;
};

std::optional<std::string> coloursOf(const Unpacker &unpacker, const ImageFacts &facts,
                                     const std::string &palette)
{
    const auto count = std::size_t(facts.components);
    const std::size_t colours = palette.size() / count;
    if (colours == 0)
        return {};
    std::string samples;
    samples.reserve(std::size_t(facts.width) * facts.height * count);
    for (std::size_t row = 0; row < facts.height; ++row) {
        for (std::size_t column = 0; column < facts.width; ++column) {
            // Readers take the last colour for an index beyond it.
            const std::size_t index =
                std::min<std::size_t>(unpacker.valueAt(row, column), colours - 1);
            samples.append(palette, index * count, count);
        }
    }
    return samples;
}

std::string scaled(const Unpacker &unpacker, const ImageFacts &facts, std::size_t perRow)
{
    const unsigned largest = facts.bits >= 8 ? 255 : (1U << facts.bits) - 1;
    std::string samples;
    samples.reserve(perRow * facts.height);
    for (std::size_t row = 0; row < facts.height; ++row) {
        for (std::size_t column = 0; column < perRow; ++column)
            samples += char(unpacker.valueAt(row, column) * 255 / largest);
    }
    return samples;
}

// All items but the last.
QPDFObjectHandle beforeLast(QPDF &document, QPDFObjectHandle array)
{
    if (!array.isArray())
        return QPDFObjectHandle::newNull();
    QPDFObjectHandle result = QPDFObjectHandle::newArray();
    for (int index = 0; index + 1 < array.getArrayNItems(); ++index)
        result.appendItem(broughtInto(document, array.getArrayItem(index)));
    return result;
}

} // namespace

std::optional<std::string> bytesForLastFilter(QPDFObjectHandle stream)
{
    if (filtersOf(stream).size() < 2)
        return rawBytesOf(stream);
    QPDF scratch;
    scratch.emptyPDF();
    QPDFObjectHandle packed = QPDFObjectHandle::newStream(&scratch);
    packed.replaceStreamData(rawBytesOf(stream),
                             beforeLast(scratch, stream.getDict().getKey("/Filter")),
                             beforeLast(scratch, stream.getDict().getKey("/DecodeParms")));
    return decodedBytesOf(packed);
}

std::optional<std::string> plainSamplesOf(QPDFObjectHandle image, const ImageFacts &facts)
{
    const std::size_t perRow =
        std::size_t(facts.width) * (facts.indexed ? 1 : std::size_t(facts.components));
    const std::size_t plain =
        std::size_t(facts.width) * std::size_t(facts.components) * facts.height;
    const auto packed = plain <= mostBytes ? decodedBytesOf(image) : std::nullopt;
    if (!packed)
        return {};
    const Unpacker unpacker(*packed, facts, perRow);
    if (packed->size() < unpacker.stride() * facts.height)
        return {};
    if (!facts.indexed)
        return scaled(unpacker, facts, perRow);
    const auto palette = paletteOf(image.getDict().getKey("/ColorSpace"));
    return palette ? coloursOf(unpacker, facts, *palette) : std::nullopt;
}

} // namespace engine
