#include "tounicode.h"

#include <optional>
#include <vector>

namespace engine {

namespace {

constexpr int mostCodes = 65536;

std::optional<unsigned> hexDigit(char letter)
{
    if (letter >= '0' && letter <= '9')
        return unsigned(letter - '0');
    const char upper = char(letter & ~0x20);
    return upper >= 'A' && upper <= 'F' ? std::optional(unsigned(upper - 'A') + 10) : std::nullopt;
}

std::string bytesOf(const std::string &hex)
{
    std::string bytes;
    unsigned value = 0;
    bool half = false;
    for (const char letter : hex) {
        const auto digit = hexDigit(letter);
        if (!digit)
            continue;
        value = value * 16 + *digit;
        if (half)
            bytes += char(value & 0xff);
        half = !half;
    }
    return bytes;
}

// Strings as "<" and their bytes, everything else as it stands.
std::vector<std::string> tokensOf(const std::string &cmap)
{
    constexpr const char *blanks = " \t\r\n\f";
    std::vector<std::string> tokens;
    std::size_t place = 0;
    while ((place = cmap.find_first_not_of(blanks, place)) != std::string::npos) {
        if (cmap[place] == '<' && cmap.compare(place, 2, "<<") != 0) {
            const std::size_t end = cmap.find('>', place);
            tokens.push_back('<' + bytesOf(cmap.substr(place, end - place)));
            place = end == std::string::npos ? end : end + 1;
        } else if (cmap[place] == '[' || cmap[place] == ']') {
            tokens.emplace_back(1, cmap[place++]);
        } else {
            const std::size_t end = cmap.find_first_of(" \t\r\n\f[]<", place + 1);
            tokens.push_back(cmap.substr(place, end - place));
            place = end;
        }
    }
    return tokens;
}

// The next number of as many bytes; all zeros after the last.
void increment(std::string &bytes)
{
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
        *byte = char(static_cast<unsigned char>(*byte) + 1);
        if (*byte != '\0')
            return;
    }
}

class Reader
{
public:
    explicit Reader(const std::string &cmap)
        : m_tokens(tokensOf(cmap))
    {
    }

    std::map<std::string, std::string> letters()
    {
        while (m_place < m_tokens.size()) {
            const std::string &word = m_tokens[m_place++];
            if (word == "beginbfchar")
                readCodes();
            else if (word == "beginbfrange")
                readRanges();
        }
        return m_letters;
    }

private:
    [[nodiscard]] bool isString(std::size_t ahead) const
    {
        return m_place + ahead < m_tokens.size() && m_tokens[m_place + ahead].front() == '<';
    }

    std::string take() { return m_tokens[m_place++].substr(1); }

    void readCodes()
    {
        while (isString(0) && isString(1)) {
            const std::string code = take();
            m_letters[code] = take();
        }
    }

    void readRanges()
    {
        while (isString(0) && isString(1)) {
            std::string code = take();
            const std::string last = take();
            if (isString(0))
                readRun(code, last, take());
            else if (m_place < m_tokens.size() && m_tokens[m_place] == "[")
                readList(code);
        }
    }

    void readRun(std::string code, const std::string &last, std::string letters)
    {
        for (int count = 0; count < mostCodes; ++count) {
            m_letters[code] = letters;
            if (code >= last || code.size() != last.size())
                return;
            increment(code);
            increment(letters);
        }
    }

    void readList(std::string &code)
    {
        ++m_place;
        for (; isString(0); increment(code))
            m_letters[code] = take();
        ++m_place;
    }

    std::vector<std::string> m_tokens;
    std::size_t m_place = 0;
    std::map<std::string, std::string> m_letters;
};

} // namespace

std::map<std::string, std::string> lettersOfCodes(const std::string &cmap)
{
    return Reader(cmap).letters();
}

} // namespace engine
