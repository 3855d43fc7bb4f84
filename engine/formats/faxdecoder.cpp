#include "faxdecoder.h"

#include "faxcodes.h"

#include <algorithm>

namespace engine {

namespace {

struct Damage
{
};

// Beyond the end there are zeros, which are no code word.
class BitReader
{
public:
    explicit BitReader(std::string_view data)
        : m_data(data)
    {
    }

    [[nodiscard]] std::uint32_t ahead(unsigned bits) const
    {
        std::uint32_t window = 0;
        for (std::size_t i = 0; i < 3; ++i)
            window = window << 8 | byte(m_byte + i);
        return window >> (24 - m_bit - bits) & ((1U << bits) - 1);
    }

    // Takes a code word, which there has to be.
    std::int16_t take(FaxCode code)
    {
        if (code.length == 0)
            throw Damage();
        m_byte += (m_bit + code.length) / 8;
        m_bit = (m_bit + code.length) % 8;
        return code.value;
    }

    void align()
    {
        m_byte += m_bit > 0 ? 1 : 0;
        m_bit = 0;
    }

private:
    [[nodiscard]] std::uint8_t byte(std::size_t i) const
    {
        return i < m_data.size() ? std::uint8_t(m_data[i]) : 0;
    }

    std::string_view m_data;
    std::size_t m_byte = 0;
    unsigned m_bit = 0;
};

// Where a row's colour changes, from the left; it begins with white, and a row that begins with
// black changes at once. Ends with sentinels at the row's end.
class Changes
{
public:
    explicit Changes(std::uint32_t columns)
        : m_columns(columns)
    {
        clear();
        finish();
    }

    void clear() { m_places.clear(); }

    // Two changes at one place are none.
    void add(std::uint32_t place)
    {
        if (!m_places.empty() && m_places.back() == place)
            m_places.pop_back();
        else if (place < m_columns)
            m_places.push_back(place);
    }

    // As many as may be asked for: b1, one more for the right colour, and b2.
    void finish() { m_places.insert(m_places.end(), sentinels, m_columns); }

    // Finds b1: the first change to the other colour that lies right of a place, searching from
    // where the last one was.
    std::size_t findNext(std::size_t i, std::int64_t place, bool black) const
    {
        while (i > 0 && m_places[i - 1] > place)
            --i;
        while (m_places[i] <= place)
            ++i;
        return i % 2 == (black ? 1 : 0) ? i : i + 1;
    }

    std::uint32_t at(std::size_t i) const { return m_places[i]; }

    void draw(std::uint8_t *row) const
    {
        for (std::size_t i = 0; m_places[i] < m_columns; i += 2)
            blacken(row, m_places[i], m_places[i + 1]);
    }

private:
    static constexpr std::size_t sentinels = 3;

    static void blacken(std::uint8_t *row, std::uint32_t begin, std::uint32_t end)
    {
        const unsigned first = 0xFFU >> (begin % 8);
        const unsigned last = ~(0xFFU >> (end % 8)) & 0xFFU;
        if (begin / 8 == end / 8) {
            row[begin / 8] = std::uint8_t(row[begin / 8] | (first & last));
            return;
        }
        row[begin / 8] = std::uint8_t(row[begin / 8] | first);
        std::fill(row + begin / 8 + 1, row + end / 8, std::uint8_t(0xFF));
        if (last != 0)
            row[end / 8] = std::uint8_t(row[end / 8] | last);
    }

    std::uint32_t m_columns;
    std::vector<std::uint32_t> m_places;
};

class RowDecoder
{
public:
    RowDecoder(BitReader &reader, std::uint32_t columns)
        : m_reader(reader)
        , m_columns(columns)
        , m_above(columns)
        , m_changes(columns)
    {
    }

    const Changes &decode()
    {
        std::swap(m_above, m_changes);
        m_changes.clear();
        m_place = -1;
        m_black = false;
        m_next = 0;
        while (m_place < m_columns)
            decodeMode();
        m_changes.finish();
        return m_changes;
    }

private:
    void decodeMode()
    {
        m_next = m_above.findNext(m_next, m_place, m_black);
        const std::int16_t mode = m_reader.take(modeCode(m_reader.ahead(modeCodeBits)));
        if (mode == passMode) {
            m_place = m_above.at(m_next + 1);
        } else if (mode == horizontalMode) {
            m_place = std::max<std::int64_t>(m_place, 0);
            change(m_place + run());
            change(m_place + run());
        } else {
            changeBeyond(std::int64_t(m_above.at(m_next)) + mode);
        }
    }

    void changeBeyond(std::int64_t place)
    {
        if (place <= m_place)
            throw Damage();
        change(place);
    }

    void change(std::int64_t place)
    {
        if (place > m_columns)
            throw Damage();
        m_changes.add(std::uint32_t(place));
        m_place = place;
        m_black = !m_black;
    }

    std::int64_t run()
    {
        std::int64_t length = 0;
        for (;;) {
            const int part = m_reader.take(runCode(m_black, m_reader.ahead(runCodeBits)));
            length += part;
            if (length > m_columns)
                throw Damage();
            if (part < 64)
                return length;
        }
    }

    BitReader &m_reader;
    std::int64_t m_columns;
    Changes m_above;
    Changes m_changes;
    std::int64_t m_place = -1; // a0; -1 is the imaginary pixel before the row
    bool m_black = false;
    std::size_t m_next = 0;
};

void decodeRows(BitReader reader, Bitmap &bitmap, bool aligned)
{
    RowDecoder decoder(reader, bitmap.width());
    for (std::uint32_t y = 0; y < bitmap.height(); ++y) {
        if (aligned)
            reader.align();
        decoder.decode().draw(bitmap.row(y));
    }
}

} // namespace

std::optional<Bitmap> decodeGroup4(std::string_view data, const FaxLayout &layout)
{
    // The least that a row takes is a bit.
    if (layout.columns == 0 || layout.rows / 8 > data.size())
        return {};
    std::optional<Bitmap> bitmap = Bitmap::blank(layout.columns, layout.rows);
    if (!bitmap)
        return {};
    try {
        decodeRows(BitReader(data), *bitmap, layout.encodedByteAlign);
    } catch (const Damage &) {
        return {};
    }
    if (layout.blackIs1)
        bitmap->invert();
    return bitmap;
}

} // namespace engine
