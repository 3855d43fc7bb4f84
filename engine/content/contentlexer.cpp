#include "contentlexer.h"

#include <charconv>

namespace engine {

namespace {

constexpr int none = -1;

bool isBlank(int byte)
{
    return byte == 0 || byte == '\t' || byte == '\n' || byte == '\f' || byte == '\r' || byte == ' ';
}

bool isRegular(int byte)
{
    return byte != none && !isBlank(byte) &&
           std::string_view("()<>[]{}/%").find(char(byte)) == std::string_view::npos;
}

int hexOf(int byte)
{
    if (byte >= '0' && byte <= '9')
        return byte - '0';
    const int letter = byte | 0x20;
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : none;
}

bool isPrintable(int byte)
{
    return isBlank(byte) || (byte >= 0x20 && byte < 0x7f);
}

// As readers take numbers: with a plus, with nothing before the point, with a second minus inside.
bool readNumber(std::string_view text, double &number)
{
    bool negative = false;
    while (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = negative || text.front() == '-';
        text.remove_prefix(1);
    }
    const bool isNumber =
        !text.empty() && ((text.front() >= '0' && text.front() <= '9') ||
                          (text.front() == '.' && text.size() > 1) || text == ".");
    if (!isNumber)
        return false;
    number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    number = negative ? -number : number;
    return true;
}

} // namespace

ContentLexer::ContentLexer(std::string_view content)
    : m_content(content)
{
}

int ContentLexer::at(std::size_t position) const
{
    return position < m_content.size() ? static_cast<unsigned char>(m_content[position]) : none;
}

const Token &ContentLexer::give(Token::Kind kind)
{
    m_token.kind = kind;
    return m_token;
}

const Token &ContentLexer::give(Token::Kind kind, std::size_t bytes)
{
    m_position += bytes;
    return give(kind);
}

void ContentLexer::skipBlanks()
{
    while (isBlank(at(m_position)) || at(m_position) == '%') {
        if (at(m_position++) != '%')
            continue;
        while (at(m_position) != none && at(m_position) != '\n' && at(m_position) != '\r')
            ++m_position;
    }
}

const Token &ContentLexer::next()
{
    skipBlanks();
    switch (at(m_position)) {
    case none:
        return give(Token::End);
    case '/':
        return name();
    case '(':
        return string();
    case '[':
        return give(Token::ArrayBegin, 1);
    case ']':
        return give(Token::ArrayEnd, 1);
    case '<':
        return at(m_position + 1) == '<' ? give(Token::DictBegin, 2) : hexString();
    case '>':
        return at(m_position + 1) == '>' ? give(Token::DictEnd, 2) : give(Token::Broken);
    case ')':
    case '{':
    case '}':
        return give(Token::Broken);
    default:
        return regular();
    }
}

const Token &ContentLexer::name()
{
    m_token.text = "/";
    for (++m_position; isRegular(at(m_position)); ++m_position) {
        const int high = at(m_position) == '#' ? hexOf(at(m_position + 1)) : none;
        const int low = high == none ? none : hexOf(at(m_position + 2));
        m_token.text += low == none ? char(at(m_position)) : char(high * 16 + low);
        m_position += low == none ? 0 : 2;
    }
    return give(Token::Name);
}

// Behind the backslash.
void ContentLexer::escape()
{
    static constexpr std::string_view letters = "nrtbf";
    static constexpr std::string_view meanings = "\n\r\t\b\f";
    const int byte = at(m_position++);
    if (byte >= '0' && byte <= '7') {
        int code = byte - '0';
        for (int digits = 1; digits < 3 && at(m_position) >= '0' && at(m_position) <= '7'; ++digits)
            code = code * 8 + at(m_position++) - '0';
        m_token.text += char(code);
    } else if (byte == '\r') {
        m_position += at(m_position) == '\n';
    } else if (byte != '\n' && byte != none) {
        const std::size_t letter = letters.find(char(byte));
        m_token.text += letter == std::string_view::npos ? char(byte) : meanings[letter];
    }
}

const Token &ContentLexer::string()
{
    m_token.text.clear();
    int depth = 1;
    for (++m_position; at(m_position) != none;) {
        const int byte = at(m_position++);
        depth += int(byte == '(') - int(byte == ')');
        if (depth == 0)
            return give(Token::String);
        if (byte == '\\')
            escape();
        else
            m_token.text += char(byte);
    }
    return give(Token::Broken);
}

const Token &ContentLexer::hexString()
{
    m_token.text.clear();
    int high = none;
    for (++m_position; at(m_position) != none && at(m_position) != '>'; ++m_position) {
        const int digit = hexOf(at(m_position));
        if (digit == none)
            continue;
        if (high != none)
            m_token.text += char(high * 16 + digit);
        high = high == none ? digit : none;
    }
    if (high != none)
        m_token.text += char(high * 16);
    return at(m_position) == '>' ? give(Token::String, 1) : give(Token::Broken);
}

const Token &ContentLexer::regular()
{
    const std::size_t begin = m_position;
    bool sound = true;
    for (; isRegular(at(m_position)); ++m_position)
        sound = sound && isPrintable(at(m_position));
    const std::string_view text = m_content.substr(begin, m_position - begin);
    if (readNumber(text, m_token.number))
        return give(Token::Number);
    m_token.text = text;
    return give(sound ? Token::Operator : Token::Broken);
}

// What follows is content again, not an image's bytes.
bool ContentLexer::endsImageAt(std::size_t position) const
{
    constexpr std::size_t looked = 32;
    if (at(position) != 'E' || at(position + 1) != 'I' || isRegular(at(position + 2)))
        return false;
    for (std::size_t place = position + 2; place < position + 2 + looked; ++place) {
        if (at(place) != none && !isPrintable(at(place)))
            return false;
    }
    return true;
}

bool ContentLexer::skipInlineImage(std::optional<std::size_t> bytes)
{
    const std::size_t begin = m_position + (isBlank(at(m_position)) ? 1 : 0);
    std::size_t end = begin + bytes.value_or(0);
    while (bytes && isBlank(at(end)))
        ++end;
    if (!bytes || !endsImageAt(end)) {
        for (end = begin; end < m_content.size(); ++end) {
            if (isBlank(at(end - 1)) && endsImageAt(end))
                break;
        }
    }
    m_position = std::min(end + 2, m_content.size());
    return end < m_content.size();
}

} // namespace engine
